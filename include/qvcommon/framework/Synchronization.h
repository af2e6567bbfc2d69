#pragma once

/// @file The framework's critical section.

#include <mutex>

#include "qvcommon/Export.h"
#include "qvcommon/framework/Types.h"

/// A recursive mutex for the threads of a process: a thread may lock it repeatedly, and must unlock it as often.
class QVCOMMON_API CCriticalSection {
public:
    CCriticalSection() = default;
    ~CCriticalSection() = default;
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;

    /// Waits without a timeout. Always returns non-zero.
    BOOL Lock();
    /// Must be called by the thread that holds it. Always returns non-zero.
    BOOL Unlock();

private:
    std::recursive_mutex m_mutex;
};
