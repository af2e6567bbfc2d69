#pragma once

/// @file Locks between the threads of one process.

#include <memory>

#include "qvcommon/framework/Synchronization.h"

namespace qv::platform {
class ReadWriteLock;
}

/// A lock of many readers or one writer. Writers come first: while one waits, no new reader gets in, and a writer that has
/// finished hands over to the next writer before any reader.
///
///     held by      | StartRead                    | StartWrite | EndRead                   | EndWrite
///     -------------+------------------------------+------------+---------------------------+----------------------------
///     nobody       | reads; waits if a writer is  | writes     |                           |
///                  | waiting (it is on its way)   |            |                           |
///     n readers    | reads; waits if a writer is  | waits      | n - 1 readers; the last   |
///                  | waiting                      |            | one wakes a writer        |
///     a writer     | waits                        | waits      |                           | nobody; wakes one writer if
///                  |                              |            |                           | any waits, else all readers
///
/// Waits have no limit. Not re-entrant: a thread that holds the lock and asks to write, or that writes and asks to read,
/// waits for ever; one that reads and asks to read waits for ever if a writer came between. Readers wait as long as writers
/// keep coming. A writer that has been passed by others several times is not passed any more by writers that come later.
///
/// Any thread may call any member; who ends is who started. A copy is the same lock: it shares everything with the lock
/// that it was copied from, and the system's objects behind them go with the last of them.
///
/// Built on two events and a mutex on Windows, on one atomic word and the kernel's wait-on-address on Linux.
class QVCOMMON_API CReadWriteLock {
public:
    /// @throws std::bad_alloc when the system has no objects left.
    CReadWriteLock();

    void StartRead();
    void EndRead();
    void StartWrite();
    void EndWrite();

private:
    std::shared_ptr<qv::platform::ReadWriteLock> m_lock;
};

/// Holds a critical section, another object's, for the length of a scope.
class QVCOMMON_API CCriticalExclusion {
public:
    explicit CCriticalExclusion(CCriticalSection& section) : m_section(section) { m_section.Lock(); }
    ~CCriticalExclusion() { m_section.Unlock(); }
    CCriticalExclusion(const CCriticalExclusion&) = delete;
    CCriticalExclusion& operator=(const CCriticalExclusion&) = delete;

private:
    CCriticalSection& m_section;
};
