// Background work: a thread that ticks while the program does something else.
//
//   background_timer TICKS

#include <cstdio>
#include <cstdlib>
#include <future>

#include "qvcommon/Exceptions.h"
#include "qvcommon/TimerThread.h"

class Countdown : public CTimerThread {
public:
    explicit Countdown(int ticks) : m_left(ticks) {}

    // A derived class stops in its own destructor: the thread must not call members of a partly destroyed object.
    ~Countdown() override { Countdown::StopThread(); }

    // Waits for the last tick.
    void Wait() { m_done.get_future().wait(); }

protected:
    // These three run on the timer's thread, and no exception may leave them. Data shared with other threads must be
    // guarded; here only the promise is shared, which is thread-safe.
    void OnThreadStart() override { std::puts("started"); }
    void OnThreadStop() override { std::puts("stopped"); }
    void OnTick() override {
        if (m_left == 0) return;
        std::printf("%d\n", m_left);
        if (--m_left == 0) m_done.set_value();
    }

private:
    int m_left;
    std::promise<void> m_done;
};

int main(int argc, char** argv) {
    QvReportUncaught();
    const int ticks = argc == 2 ? std::atoi(argv[1]) : 0;
    if (ticks < 1) {
        std::fputs("usage: background_timer TICKS\n", stderr);
        return 2;
    }

    Countdown countdown(ticks);
    countdown.StartThread(1);  // in seconds: ticks at once, then a second after each tick has ended
    countdown.Wait();

    // Interrupts the pause, but never a tick, and returns when OnThreadStop has ended.
    countdown.StopThread();
}
