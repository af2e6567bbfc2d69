#pragma once

/// @file The framework's critical section.

#include <mutex>

#include "qvcommon/Export.h"
#include "qvcommon/framework/Types.h"

/// Mutual exclusion between the threads of a process. A thread that has entered may enter again, and leaves as often.
class QVCOMMON_API CCriticalSection {
public:
    CCriticalSection() = default;
    ~CCriticalSection() = default;
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;

    /// Waits without limit. Always returns non-zero.
    BOOL Lock();
    /// For the thread that has entered. Always returns non-zero.
    BOOL Unlock();

private:
    std::recursive_mutex m_mutex;
};
