#include "qvcommon/TimerThread.h"

#include "platform/Event.h"
#include "platform/Thread.h"

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

struct CTimerThread::Start {
    CTimerThread* timer;
    std::shared_ptr<State> state;
};

CTimerThread::CTimerThread() : m_state(std::make_shared<State>()) {}

CTimerThread::~CTimerThread() = default;

void CTimerThread::StartThread(DWORD seconds) {
    m_seconds = seconds;
    // A thread that parked itself keeps the old events, where no signal meant for others reaches it.
    if (!m_state->running) m_state = std::make_shared<State>();
    m_state->running = true;
    auto start = std::make_unique<Start>(Start{this, m_state});
    const HANDLE thread = QvCreateThread(
        [](void* argument) -> UINT {
            const std::unique_ptr<Start> given(static_cast<Start*>(argument));
            given->timer->Run(*given->state);
            return 1;
        },
        start.get(), nullptr);
    if (!thread) {
        m_state->running = false;
        return;
    }
    static_cast<void>(start.release());  // the thread's own now
    QvCloseThread(thread);
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
    state.finished.Set();  // from here on the object may be gone
}
