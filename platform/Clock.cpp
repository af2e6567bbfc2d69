#include "platform/Clock.h"

#include <atomic>
#include <thread>

namespace qv::platform {
namespace {

class RealClock : public IClock {
public:
    std::chrono::system_clock::time_point Now() override { return std::chrono::system_clock::now(); }
    std::chrono::steady_clock::time_point SteadyNow() override { return std::chrono::steady_clock::now(); }
    void Sleep(std::chrono::nanoseconds duration) override { std::this_thread::sleep_for(duration); }
};

constinit RealClock g_realClock;
std::atomic<IClock*> g_clock = &g_realClock;

}  // namespace

IClock* SetClock(IClock* clock) {
    IClock* const before = g_clock.exchange(clock ? clock : &g_realClock);
    return before == &g_realClock ? nullptr : before;
}

bool IsRealTime() {
    return g_clock.load() == &g_realClock;
}

std::int64_t SecondsNow() {
    return std::chrono::floor<std::chrono::seconds>(g_clock.load()->Now()).time_since_epoch().count();
}

std::chrono::steady_clock::time_point SteadyNow() {
    return g_clock.load()->SteadyNow();
}

void Sleep(std::chrono::nanoseconds duration) {
    g_clock.load()->Sleep(duration);
}

}  // namespace qv::platform
