#pragma once

/// @file Locks between the threads of one process.

#include <memory>

#include "qvcommon/framework/Synchronization.h"

/// A lock of many readers or one writer. Writers come first: while one waits, no new reader gets in, and a writer that
/// has finished hands over to the next writer before any reader.
///
///     held by     | StartRead                    | StartWrite | EndRead                  | EndWrite
///     ------------+------------------------------+------------+--------------------------+------------------------
///     nobody      | reads; waits if a writer is  | writes     |                          |
///                 | waiting (it is on its way)   |            |                          |
///     n readers   | reads; waits if a writer is  | waits      | n - 1 readers; the last  |
///                 | waiting                      |            | one wakes a writer       |
///     a writer    | waits                        | waits      |                          | nobody; wakes a writer
///                 |                              |            |                          | if any waits, else all
///                 |                              |            |                          | readers
///
/// Waits have no limit. Not re-entrant: a thread that holds the lock and asks to write, or that writes and asks to
/// read, waits for ever; one that reads and asks to read waits for ever if a writer came between. Readers wait as long
/// as writers keep coming. A writer that has been passed by others several times is not passed any more by writers that
/// come later.
///
/// At most 2^31 readers hold the lock at once; the next one waits until another one ends.
///
/// Any thread may call any member; who ends is who started. A copy is a lock of its own with the state that the other one
/// has at that moment, so a copy of a free lock is free. The copy of a held one is held too, and by nobody who would end
/// that: whoever copies it has to end what it took over. Who waits for the other lock counts as waiting for the copy
/// without ever coming, and keeps readers out of it for ever. A lock that is assigned to must be free.
class QVCOMMON_API CReadWriteLock {
public:
    /// @throws std::bad_alloc when no memory is left.
    CReadWriteLock();
    CReadWriteLock(const CReadWriteLock& other);
    CReadWriteLock& operator=(const CReadWriteLock& other);

    /// Waits until the calling thread may read. Each call needs its EndRead.
    void StartRead();
    /// Gives back what StartRead took.
    void EndRead();
    /// Waits until the calling thread has the lock for itself. Each call needs its EndWrite.
    void StartWrite();
    /// Gives back what StartWrite took.
    void EndWrite();

private:
    friend class CLockableObject;

    // As EndRead and EndWrite, where the lock may be deleted before they return, by who waited for them.
    void EndReadOfDeleted();
    void EndWriteOfDeleted();

    struct Lock;
    std::shared_ptr<Lock> m_lock;
};

/// Holds a critical section, another object's, for the length of a scope.
class QVCOMMON_API CCriticalExclusion {
public:
    /// Waits for the section and takes it. The section must outlive this object.
    explicit CCriticalExclusion(CCriticalSection& section) : m_section(section) { m_section.Lock(); }
    ~CCriticalExclusion() { m_section.Unlock(); }
    CCriticalExclusion(const CCriticalExclusion&) = delete;
    CCriticalExclusion& operator=(const CCriticalExclusion&) = delete;

private:
    CCriticalSection& m_section;
};
