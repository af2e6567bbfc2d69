#pragma once

/// @file Native threads, and a thread that runs periodically.

#include <atomic>
#include <memory>

#include "qvcommon/Export.h"
#include "qvcommon/framework/Types.h"

/// Starts a thread with the default stack size. `id`, if not null, receives the system's thread id.
/// @return the thread's handle; null if it could not be started. The caller closes it, at any time, with QvCloseThread,
/// on Windows also with the system's CloseHandle; the thread continues to run.
QVCOMMON_API HANDLE QVCOMMON_CALL QvCreateThread(UINT(QVCOMMON_CALL* function)(void* argument), void* argument,
                                                 DWORD* id);
/// Closes the handle; no-op for null.
QVCOMMON_API void QVCOMMON_CALL QvCloseThread(HANDLE thread);

/// A thread that calls OnTick when it starts and then periodically, one interval after the last call ended. Time is
/// measured by a monotonic clock.
///
/// Virtual operations, in slot order: the destructor, StartThread, StopThread, OnTick, OnThreadStart, OnThreadStop. The
/// last three run on the timer thread; they must synchronize access to shared state and must not throw. The other
/// members are not thread-safe. The object must outlive its thread, so a derived class must be stopped before it is
/// destroyed: at the latest in its own destructor.
class QVCOMMON_API CTimerThread {
public:
    CTimerThread();
    virtual ~CTimerThread();
    CTimerThread(const CTimerThread&) = delete;
    CTimerThread& operator=(const CTimerThread&) = delete;

    /// Starts the thread. If that fails, the object remains stopped. Starting a running object starts a second thread
    /// beside the first, of which StopThread ends only one: stop first.
    /// @param seconds  between ticks; 0 ticks continuously. A running thread keeps the interval it was started with.
    virtual void StartThread(DWORD seconds);
    /// Interrupts the current pause, but never a tick, and returns when OnThreadStop has returned; at once if nothing
    /// runs.
    ///
    /// Called from OnTick it marks the object as stopped and never returns: the thread remains suspended for the rest
    /// of the process. What it waits on is kept alive, so other threads may stop, restart and destroy the object.
    virtual void StopThread();
    /// Called when the thread starts and after each interval.
    virtual void OnTick() = 0;
    /// Called once before the first OnTick. The default does nothing.
    virtual void OnThreadStart() {}
    /// Called once after the last OnTick. The default does nothing.
    virtual void OnThreadStop() {}

    /// Returns the interval passed to StartThread.
    DWORD GetTickSeconds() const { return m_seconds; }

private:
    struct State;

    void Run(State& state);

    DWORD m_seconds = 900;
    std::shared_ptr<State> m_state;  // the running flag and the events; shared with each thread
};
