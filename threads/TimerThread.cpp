#include "qvcommon/TimerThread.h"

#include "platform/Event.h"
#include "platform/Thread.h"
#include "threads/DetachedThread.h"

HANDLE QvCreateThread(UINT (*function)(void* argument), void* argument, DWORD* id) {
    std::uint32_t number = 0;
    const HANDLE thread = qv::platform::StartThread(function, argument, id ? &number : nullptr);
    if (thread && id) *id = number;
    return thread;
}

void QvCloseThread(HANDLE thread) {
    qv::platform::CloseThread(thread);
}

struct CTimerThread::State {
    std::atomic<bool> running = false;
    qv::platform::Event stop, finished;
};

CTimerThread::CTimerThread() : m_state(std::make_shared<State>()) {}

CTimerThread::~CTimerThread() = default;

void CTimerThread::StartThread(DWORD seconds) {
    m_seconds = seconds;
    // A thread that has suspended itself keeps the old events, so that no later signal reaches it.
    if (!m_state->running) m_state = std::make_shared<State>();
    m_state->running = true;
    if (!qv::StartDetached([this, state = m_state] { Run(*state); })) m_state->running = false;
}

void CTimerThread::StopThread() {
    const std::shared_ptr<State> state = m_state;
    if (state->running.exchange(false)) {
        state->stop.Set();
        state->finished.Wait();
    }
    state->finished.Reset();
}

void CTimerThread::Run(State& state) {
    const std::uint64_t interval = std::uint64_t{m_seconds} * 1000;
    OnThreadStart();
    do {
        OnTick();
        state.stop.WaitFor(interval);
    } while (state.running);
    OnThreadStop();
    state.stop.Reset();
    state.finished.Set();  // the object may be destroyed from here on
}
