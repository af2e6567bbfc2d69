#pragma once

/// @file Locks between the threads of a process.

#include <memory>

#include "qvcommon/framework/Synchronization.h"

/// A lock for many readers or one writer. Writers are preferred: while one waits, new readers block, and a writer that
/// has finished passes the lock to the next writer before any reader.
///
///     held by     | StartRead                    | StartWrite | EndRead                  | EndWrite
///     ------------+------------------------------+------------+--------------------------+------------------------
///     none        | reads; waits if a writer is  | writes     |                          |
///                 | about to take the lock       |            |                          |
///     n readers   | reads; waits if a writer is  | waits      | n - 1 readers; the last  |
///                 | waiting                      |            | one wakes a writer       |
///     a writer    | waits                        | waits      |                          | none; wakes a writer
///                 |                              |            |                          | if any waits, else all
///                 |                              |            |                          | readers
///
/// Waits have no timeout. Not re-entrant: a thread that holds the lock and requests to write, or that writes and
/// requests to read, deadlocks; one that reads and requests to read deadlocks if a writer is waiting. Readers starve
/// while writers keep arriving. A writer that others have overtaken several times is overtaken less often, since
/// later writers must queue first, but there is no bound.
///
/// At most 2^31 readers hold the lock at once; further ones wait until another one ends.
///
/// Thread-safe; a lock must be released by the thread that took it. A copy is a separate lock with the current state of
/// the other one, so a copy of a free lock is free. The copy of a held lock is held too, without an owner: the code
/// that copies it must release it. Threads waiting for the original count as waiting for the copy but never arrive,
/// which blocks its readers for ever. A lock that is assigned to must be free.
class QVCOMMON_API CReadWriteLock {
public:
    /// @throws std::bad_alloc if out of memory.
    CReadWriteLock();
    CReadWriteLock(const CReadWriteLock& other);
    CReadWriteLock& operator=(const CReadWriteLock& other);

    /// Waits until the calling thread may read. Each call must be paired with EndRead.
    void StartRead();
    /// Releases the lock taken by StartRead.
    void EndRead();
    /// Waits until the calling thread has exclusive access. Each call must be paired with EndWrite.
    void StartWrite();
    /// Releases the lock taken by StartWrite.
    void EndWrite();

private:
    friend class CLockableObject;

    // Like EndRead and EndWrite, if a waiting thread may delete the lock before they return.
    void EndReadOfDeleted();
    void EndWriteOfDeleted();

    struct Lock;
    std::shared_ptr<Lock> m_lock;
};

/// Holds a critical section for the duration of a scope.
class QVCOMMON_API CCriticalExclusion {
public:
    /// Waits for the section and takes it. Not owned; must outlive this object.
    explicit CCriticalExclusion(CCriticalSection& section) : m_section(section) { m_section.Lock(); }
    ~CCriticalExclusion() { m_section.Unlock(); }
    CCriticalExclusion(const CCriticalExclusion&) = delete;
    CCriticalExclusion& operator=(const CCriticalExclusion&) = delete;

private:
    CCriticalSection& m_section;
};
