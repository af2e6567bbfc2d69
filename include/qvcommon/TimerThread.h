#pragma once

/// @file Native threads, and a thread that does something at regular times.

#include <atomic>
#include <memory>

#include "qvcommon/Export.h"
#include "qvcommon/framework/Types.h"

/// Starts a thread with the default stack size. `id`, where not null, gets the system's number of the thread.
/// @return the thread's handle, null when it could not be started. The caller closes it, at any time, with
/// QvCloseThread, on Windows also with the system's CloseHandle; the thread runs on.
QVCOMMON_API HANDLE QVCOMMON_CALL QvCreateThread(UINT(QVCOMMON_CALL* function)(void* argument), void* argument,
                                                 DWORD* id);
/// Null does nothing.
QVCOMMON_API void QVCOMMON_CALL QvCloseThread(HANDLE thread);

/// A thread that calls OnTick when it starts and then again and again, an interval after the last call ended. Time is
/// measured by a clock that nobody sets.
///
/// Virtual operations, in slot order: the destructor, StartThread, StopThread, OnTick, OnThreadStart, OnThreadStop. The
/// last three run on the timer thread and must guard what they share with others; no exception may leave them. The other
/// members are for one thread at a time. The object must outlive its thread, so a derived class is stopped before it ends:
/// at the latest by its own destructor.
class QVCOMMON_API CTimerThread {
public:
    CTimerThread();
    virtual ~CTimerThread();
    CTimerThread(const CTimerThread&) = delete;
    CTimerThread& operator=(const CTimerThread&) = delete;

    /// A thread that cannot be started leaves the object stopped. Starting a running object starts a second thread beside
    /// the first, of which StopThread ends one: stop first.
    /// @param seconds  between ticks; 0 ticks without a pause. A thread that runs keeps the interval it started with.
    virtual void StartThread(DWORD seconds);
    /// Cuts the present pause short, never a tick, and returns when OnThreadStop has ended; at once when nothing runs.
    ///
    /// Called from OnTick it marks the object as stopped and never returns: the thread stays parked for the rest of the
    /// process. Whatever it waits on is kept alive, so the object may be stopped, started anew and destroyed by others.
    virtual void StopThread();
    /// Called when the thread starts and after each interval.
    virtual void OnTick() = 0;
    /// Called once before the first OnTick. Does nothing here.
    virtual void OnThreadStart() {}
    /// Called once after the last OnTick. Does nothing here.
    virtual void OnThreadStop() {}

    /// The interval that StartThread got.
    DWORD GetTickSeconds() const { return m_seconds; }

private:
    struct State;

    void Run(State& state);

    DWORD m_seconds = 900;
    std::shared_ptr<State> m_state;  // the running flag and the events; each thread holds them too
};
