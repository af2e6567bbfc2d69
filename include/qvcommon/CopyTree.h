#pragma once

/// @file Copying a tree of folders.

#include <cstdint>

#include "qvcommon/framework/LeftOut.h"
#include "qvcommon/framework/String.h"

/// Hears of a tree being copied. All members may be left as they are.
class QVCOMMON_API ICopyProgress {
public:
    /// Before anything is copied.
    virtual void OnStartCopy();
    /// Before each file, with its full path.
    virtual void OnCopyFile(const char* sourcePath);
    /// When the whole tree was copied, failures that were passed over included.
    virtual void OnFinishCopy();
    /// On each failure, with the system's error number and its message. Return 0 to give up the copy. Returns 1 here.
    virtual int OnError(DWORD error, const char* message);

    virtual ~ICopyProgress();  // after the first four callbacks, which have the first four slots

    /// As so many bytes more of the present file have been copied; not for files that an override of CopyFileA copies. It
    /// is called from within the system's own work and must not throw. Small files come as one piece.
    virtual void OnCopyBytes(std::uint64_t bytes);
};

/// Copies every file of a folder tree into another one. Copies keep the times and attributes of their files, so that a
/// second run with SetLaterOnly finds them up to date. One object, one thread; observers may not change the object.
///
/// Links to folders are not entered, and nothing is made in their place. Links to files are copied as the files that they
/// lead to. Devices and pipes are failures, and so are links that lead nowhere. A destination inside the source is not
/// copied into itself. The observer of SetLeftOut is given the path of everything that is not copied, ICopyProgress only the
/// errors.
///
/// Each folder is opened relative to the open folder above it. Renaming folders during the copy, or replacing them by links,
/// makes the copy leave neither the source nor the destination; a link in place of a folder below the destination is an
/// error. An override of CopyFileA gets paths and must guard itself.
class QVCOMMON_API CCopyTree : public CObject {
public:
    /// Copies one folder and all below it, in the order of the system. Missing folders are made, existing files replaced,
    /// read-only ones too: their attribute is taken away, also of those that are then skipped.
    ///
    /// A file or folder that cannot be copied, read or made is told to the observer, and the copy goes on with the next
    /// one; without an observer nobody hears of it.
    /// @throws CUserException* when the observer gives up. What was copied stays.
    virtual void CopyTree(CString source, CString destination);
    /// The same with the folders that were set, and with OnStartCopy before and OnFinishCopy behind it; the latter not when
    /// the copy is given up.
    virtual void CopyTree();
    /// The number of files below a folder, folders and links to folders not counted.
    virtual int GetFileCount(CString folder);
    virtual int GetFileCount();
    /// Null for none. The caller keeps its life.
    virtual void SetProgressMonitor(ICopyProgress* progress);
    /// The two folders of CopyTree() without arguments.
    virtual void SetDestinationDirectory(const char* folder);
    /// The two folders of CopyTree() without arguments.
    virtual void SetSourceDirectory(const char* folder);
    /// Non-zero: a file is skipped when the one in its place was modified in the same second or later.
    virtual void SetLaterOnly(int laterOnly);
    /// The observer, not owned and null by default, of each file and folder that is not copied; it is called before OnError.
    /// Files that SetLaterOnly skips are not reported.
    void SetLeftOut(ILeftOut* observer);
    /// Non-zero: the walk is the same and so are the callbacks, but no folder is made, and no file copied or made writable.
    /// CopyFileA then tells whether a file could be read and replaced, as far as permissions tell. Zero at first.
    void SetDryRun(int dryRun);

protected:
    /// Copies one file over an existing one. Zero when it could not, with the last system error telling why. On Linux
    /// the old file stays as it was then. Overridden to copy in another way. The name is the one that system headers
    /// make of it.
    virtual int CopyFileA(const char* source, const char* target);
    /// Tells the observer of the last system error. @throws CUserException* when it gives up.
    void OnError();

private:
    class Level;

    CString m_source;
    CString m_destination;
    ICopyProgress* m_progress = nullptr;
    ILeftOut* m_leftOut = nullptr;
    int m_laterOnly = 0;
    int m_dryRun = 0;
    Level* m_level = nullptr;  // of the copy under way, the innermost
};
