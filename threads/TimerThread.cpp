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
    // Shared with a second thread that is started beside the first.
    struct Signals {
        std::atomic<bool> running = false;
        qv::platform::Event stop, finished;
    };

    std::shared_ptr<Signals> signals = std::make_shared<Signals>();
    std::uint64_t interval = 0;  // in milliseconds
};

CTimerThread::CTimerThread() : m_state(std::make_shared<State>()) {}

CTimerThread::~CTimerThread() = default;

void CTimerThread::StartThread(DWORD seconds) {
    m_seconds = seconds;
    // A thread that has suspended itself keeps the old events, so that no later signal reaches it.
    const auto signals = m_state->signals->running ? m_state->signals : std::make_shared<State::Signals>();
    m_state = std::make_shared<State>(State{signals, std::uint64_t{seconds} * 1000});
    const bool wasRunning = signals->running.exchange(true);
    if (!qv::StartDetached([this, state = m_state] { Run(*state); })) signals->running = wasRunning;
}

void CTimerThread::StopThread() {
    const std::shared_ptr<State::Signals> signals = m_state->signals;
    if (signals->running.exchange(false)) {
        signals->stop.Set();
        signals->finished.Wait();
    }
    signals->finished.Reset();
}

void CTimerThread::Run(State& state) {
    State::Signals& signals = *state.signals;
    OnThreadStart();
    do {
        OnTick();
        signals.stop.WaitFor(state.interval);
    } while (signals.running);
    OnThreadStop();
    signals.stop.Reset();
    signals.finished.Set();  // the object may be destroyed from here on
}
