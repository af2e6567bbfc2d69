#pragma once

/// @file The lock on a document that several users share. The files on disk are described in docs/formats/lock-files.md.

#include <cstdint>

#include "qvcommon/framework/File.h"

/// Follows a wait for a lock.
class QVCOMMON_API ILockObserver {
public:
    virtual ~ILockObserver();
    /// Called after each failed try, on the waiting thread.
    /// @param holder  who holds the lock, empty if that is not known
    /// @param since  when the holder took it, in seconds since 1970 UTC; 0 if that is not known
    /// @return 0 gives up. The default waits on.
    virtual BOOL OnLockHeld(const CString& holder, std::int64_t since);
};

/// An advisory lock on a document, between processes and machines: a lock file beside it, held open exclusively, and a side
/// file that names the holder.
///
///     not held  --Lock succeeds-->  held  --Unlock, destructor, or the end of the process-->  not held
///
/// The lock ends with its process, however that dies; a lock file left behind is no lock. One object, one thread. On Linux
/// it binds programs that use this library, and a child made by fork without exec keeps the lock for as long as it lives,
/// since it has the same open file. Whoever deletes a lock file that is held lets another holder in.
///
/// All users who may write in the folder can use its locks, whatever their umasks: on Linux the two files are readable by
/// everybody who reaches them, and a lock file that may only be read can still be held. They are never followed as links,
/// and nothing but regular files is taken.
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
    /// Sets the lock file of a document: its path with the extension "lck". The path may be of any length; one that is too
    /// long for the system makes Lock fail with the cause badPath.
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
    /// Whether this object holds the lock.
    virtual bool IsLocked() const;
    /// Gives the lock back and deletes lock file and side file; failures to delete are ignored. Without the lock it does
    /// nothing. Between the two deletions a new holder may have written its side file, which then goes too: the side
    /// file is for information only.
    virtual void Unlock();

    /// The failure of the last failed try; cause 0 and system error -1 before any.
    virtual const CFileException& GetLockException() const;
    /// Who held the lock at the last failed try.
    virtual CString GetLockedBy() const;

    /// Tries once, without any pause. Result and failure as for Lock.
    bool TryLock();
    /// Tries until the lock is held, `patience` milliseconds have passed, or the observer gives up. Between two tries it
    /// waits 1 ms at first and 250 ms at most, less where the system reports the release at once (all but that of another
    /// machine or a killed holder). Like Lock it ends at once after a cause that does not pass by waiting, such
    /// as invalidFile where the file system cannot lock. Result and failure as for Lock.
    /// @param observer  not owned, may be null
    bool LockFor(UINT patience, ILockObserver* observer = nullptr);
    /// Before Lock: with 1, programs that are started while the lock is held keep it until they have ended, also when this
    /// process is gone before. 0 at first. On Windows only programs that CProcess starts.
    void SetInheritable(int inheritable);

protected:
    /// Each: deletes, writes or reads the side file, and ignores every failure.
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
    std::int64_t m_lockedSince = 0;
    bool m_inheritable = false;
    bool m_pauses = true;  // whether reading the side file may wait for its writer

    enum class AfterFailure { Pause, TryAtOnce, GiveUp };
    bool TryOnce();
    void CloseLock();
    AfterFailure WhatNext() const;
};
