#pragma once

/// @file The lock on a document that is shared by several users. docs/formats/lock-files.md describes the files.

#include <cstdint>

#include "qvcommon/framework/File.h"

/// Observes waiting for a lock.
class QVCOMMON_API ILockObserver {
public:
    virtual ~ILockObserver();
    /// Called after each failed try, on the waiting thread.
    /// @param holder  who holds the lock, empty if unknown
    /// @param since  when the holder took it, in seconds since 1970 UTC; 0 if unknown
    /// @return 0 to give up. The default continues waiting.
    virtual BOOL OnLockHeld(const CString& holder, std::int64_t since);
};

/// An advisory lock on a document, between processes and machines: a lock file beside it, held open exclusively, and a
/// side file that names the holder.
///
///     not held  --Lock succeeds-->  held  --Unlock, destructor, or the end of the process-->  not held
///
/// The lock is released when its process ends, even abnormally; a leftover lock file is not a lock. Not thread-safe. On
/// Linux it is honoured only by programs that use this library, and a child made by fork without exec keeps the lock as
/// long as it lives, since it shares the open file. Deleting a held lock file lets another holder in.
///
/// All users who can write to the folder can use its locks, regardless of their umasks: on Linux the two files are
/// world-readable, and a read-only lock file can still be held. Links are never followed, and anything but a regular
/// file is rejected.
class QVCOMMON_API CLockFile : public CObject {
public:
    CLockFile() = default;
    /// Unlocks.
    ~CLockFile() override;
    CLockFile(const CLockFile&) = delete;
    CLockFile& operator=(const CLockFile&) = delete;

    /// The lock file's path, empty by default. Setting it does not affect a held lock: unlock first.
    virtual CString GetFile() const;
    virtual void SetFile(const char* path);
    /// Sets the lock file of a document: its path with the extension "lck". The path may have any length; one that is
    /// too long for the system makes Lock fail with the cause badPath.
    virtual void SetSourceFile(const char* documentPath);

    /// Takes the lock, trying up to `attempts` times.
    ///
    /// After each failed try it reads who holds the lock. After a sharing or lock violation, a full folder or a full
    /// disk, it then waits, 500 ms at first and 1.5 times as long each time, including after the last try; after a
    /// generic failure it retries at once; any other cause ends the attempts.
    ///
    /// @param attempts  0 or less tries nothing and reports the current state.
    /// @return true if this object holds the lock, also if it held it before the call.
    /// After false, GetLockException() returns the cause and GetLockedBy() the holder, or empty if its name cannot be
    /// read. Raises nothing.
    virtual bool Lock(int attempts);
    /// Returns whether this object holds the lock.
    virtual bool IsLocked() const;
    /// Releases the lock and deletes lock file and side file; failures to delete are ignored. No-op without the lock.
    /// While a program that inherited the lock keeps it, both files remain, and the next holder deletes them. A new
    /// holder may write its side file between the two deletions, which then deletes that file too: the side file is
    /// informational only.
    virtual void Unlock();

    /// Returns the failure of the last failed try; cause 0 and system error -1 if there was none.
    virtual const CFileException& GetLockException() const;
    /// Returns who held the lock at the last failed try.
    virtual CString GetLockedBy() const;

    /// Tries once, without waiting. Result and failure as for Lock.
    bool TryLock();
    /// Tries until the lock is held, `patience` milliseconds have passed, or the observer gives up. Between two tries
    /// it waits 1 ms at first and 250 ms at most, less where the system reports the release at once (except by another
    /// machine or a killed holder). Like Lock it ends at once after a cause that waiting cannot resolve, such as
    /// invalidFile if the file system does not support locks. Result and failure as for Lock.
    /// @param observer  not owned, may be null
    bool LockFor(UINT patience, ILockObserver* observer = nullptr);
    /// Call before Lock: with 1, programs started while the lock is held keep it until they have ended, even if this
    /// object releases it or this process ends first. 0 by default. On Windows only programs started by CProcess.
    void SetInheritable(int inheritable);

protected:
    /// Each: Deletes, writes or reads the side file, ignoring every failure.
    virtual void RemoveLockedBy();
    virtual void WriteLockedBy();
    virtual void ReadLockedBy();
    /// Returns the lock file's path with the extension "lid".
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
    bool CloseLock();
    AfterFailure WhatNext() const;
};
