#pragma once

/// @file Copying of folder trees.

#include <cstdint>

#include "qvcommon/framework/LeftOut.h"
#include "qvcommon/framework/String.h"

/// Observes the copying of a tree. Overriding members is optional.
class QVCOMMON_API ICopyProgress {
public:
    /// Called before anything is copied.
    virtual void OnStartCopy();
    /// Called before each file, with its full path.
    virtual void OnCopyFile(const char* sourcePath);
    /// Called after the whole tree was copied, even if failures were ignored.
    virtual void OnFinishCopy();
    /// Called on each failure, with the system's error number and its message. Return 0 to cancel the copy. Returns 1
    /// here.
    virtual int OnError(DWORD error, const char* message);

    virtual ~ICopyProgress();  // after the first four callbacks, which have the first four slots

    /// Called after `bytes` more of the current file have been copied; not for files copied by an override of
    /// CopyFileA. It is called from within system calls and must not throw. Small files are reported in one piece.
    virtual void OnCopyBytes(std::uint64_t bytes);
};

/// Copies every file of a folder tree into another one. Copies keep the times and attributes of their files, so that a
/// second run with SetLaterOnly finds them up to date. Not thread-safe; observers must not change the object.
///
/// Links to folders are not followed, and nothing is created in their place. Links to files are copied as the files
/// that they refer to. Devices, pipes and dangling links are failures. A destination inside the source is not copied
/// into itself. The observer of SetLeftOut receives the path of everything that is not copied, ICopyProgress only the
/// errors.
///
/// Each folder is opened relative to the open folder above it. Renaming folders during the copy, or replacing them by
/// links, cannot make the copy leave the source or the destination; a link in place of a folder below the destination
/// is an error. An override of CopyFileA receives paths and must protect itself.
class QVCOMMON_API CCopyTree : public CObject {
public:
    /// Copies a folder and everything below it, in the order of the system. Missing folders are created and existing
    /// files replaced, including read-only ones: their attribute is cleared, even if they are then skipped.
    ///
    /// A file or folder that cannot be copied, read or created is reported to the observer, and the copy continues with
    /// the next one; without an observer it is silently ignored.
    /// @throws CUserException* if the observer cancels. What was copied is kept.
    virtual void CopyTree(CString source, CString destination);
    /// Copies between the configured folders, with OnStartCopy before and OnFinishCopy after it; the latter is not
    /// called if the copy is cancelled.
    virtual void CopyTree();
    /// Returns the number of files below a folder, not counting folders and links to folders.
    virtual int GetFileCount(CString folder);
    virtual int GetFileCount();
    /// Sets the observer; null for none. Not owned; must outlive the copy.
    virtual void SetProgressMonitor(ICopyProgress* progress);
    /// Sets the destination of CopyTree() without arguments.
    virtual void SetDestinationDirectory(const char* folder);
    /// Sets the source of CopyTree() without arguments.
    virtual void SetSourceDirectory(const char* folder);
    /// Non-zero: a file is skipped if the existing one was modified in the same second or later.
    virtual void SetLaterOnly(int laterOnly);
    /// Sets the observer of each file and folder that is not copied; not owned, null by default. It is called before
    /// OnError. Files skipped by SetLaterOnly are not reported.
    void SetLeftOut(ILeftOut* observer);
    /// Non-zero: a dry run with the same walk and callbacks, but no folder is created and no file copied or made
    /// writable. CopyFileA then returns whether a file could be read and replaced, as far as permissions show. Zero by
    /// default.
    void SetDryRun(int dryRun);

protected:
    /// Copies one file over an existing one. Returns zero on failure and sets the last system error; on Linux the old
    /// file is then unchanged. Override it to copy in another way. The name is what system headers make of CopyFile.
    virtual int CopyFileA(const char* source, const char* target);
    /// Reports the last system error to the observer. @throws CUserException* if it cancels.
    void OnError();

private:
    class Level;

    CString m_source;
    CString m_destination;
    ICopyProgress* m_progress = nullptr;
    ILeftOut* m_leftOut = nullptr;
    int m_laterOnly = 0;
    int m_dryRun = 0;
    Level* m_level = nullptr;  // innermost one of the running copy
};
