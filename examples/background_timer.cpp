// Work in the background: a thread that ticks, while the program does something else.
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

    // A derived class stops in its own destructor: the thread must not call members of an object that is half gone.
    ~Countdown() override { Countdown::StopThread(); }

    // Waits until the last tick has been.
    void Wait() { m_done.get_future().wait(); }

protected:
    // These three run on the timer's thread, and no exception may leave them. What they share with other threads has to be
    // guarded; here nothing is, since everybody else only waits for the promise.
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
    countdown.StartThread(1);  // seconds; the first tick comes at once, each next one a second after the last ended
    countdown.Wait();

    // Cuts the pause short, but never a tick, and returns when OnThreadStop has ended.
    countdown.StopThread();
}
