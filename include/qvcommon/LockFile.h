#pragma once

/// @file The lock on a document that several users share. The files on disk are described in docs/formats/lock-files.md.

#include "qvcommon/framework/File.h"

/// An advisory lock on a document, between processes and machines: a lock file beside it, held open exclusively, and a side
/// file that names the holder.
///
///     not held  --Lock succeeds-->  held  --Unlock, destructor, or the end of the process-->  not held
///
/// The lock ends with its process, however that dies; a lock file left behind is no lock. One object, one thread. On Linux
/// it binds programs that use this library.
class QVCOMMON_API CLockFile : public CObject {
public:
    CLockFile() = default;
    /// Unlocks.
    ~CLockFile() override;
    CLockFile(const CLockFile&) = delete;
    CLockFile& operator=(const CLockFile&) = delete;

    /// The lock file's path, empty at first. Setting it does not touch a lock that is held: unlock before.
    virtual CString GetFile() const;
    virtual void SetFile(const char* path);
    /// Sets the lock file of a document: its path with the extension "lck".
    virtual void SetSourceFile(const char* documentPath);

    /// Takes the lock, trying up to `attempts` times.
    ///
    /// After each failed try it reads who holds the lock. Then, after a sharing or lock violation, a full folder or a full
    /// disk, it waits, 500 ms at first and half as long again each time, the last time included; after a generic failure
    /// it tries again at once; any other cause ends the attempts.
    ///
    /// @param attempts  0 or less tries nothing and reports the present state.
    /// @return true while this object holds the lock, also when it held it before the call.
    /// After false, GetLockException() tells why and GetLockedBy() names the holder, or is empty when its name cannot be
    /// read. Raises nothing.
    virtual bool Lock(int attempts);
    virtual bool IsLocked() const;
    /// Gives the lock back and deletes lock file and side file; failures to delete are ignored. Without the lock it does
    /// nothing. Between the two deletions a new holder may have written its side file, which then goes too: the side
    /// file is for information only.
    virtual void Unlock();

    /// The failure of the last failed try; cause 0 and system error -1 before any.
    virtual const CFileException& GetLockException() const;
    /// Who held the lock at the last failed try.
    virtual CString GetLockedBy() const;

protected:
    /// The side file: each ignores every failure.
    virtual void RemoveLockedBy();
    virtual void WriteLockedBy();
    virtual void ReadLockedBy();
    /// The lock file's path with the extension "lid".
    virtual CString GetLockedByFileName() const;

private:
    CString m_path;
    bool m_locked = false;
    CFile m_file;
    CFileException m_lockException;
    CString m_lockedBy;
};
