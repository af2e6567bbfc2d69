#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>

#include "platform/Event.h"

/// Ends the test program when its scope takes longer than any test may take, under sanitizers too, and names the test as
/// the framework names one that failed.
class Watchdog {
public:
    explicit Watchdog(std::string test) : m_thread([this, test = std::move(test)] { Watch(test); }) {}
    ~Watchdog() {
        m_ended.Set();
        m_thread.join();
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    void Watch(const std::string& test) {
        constexpr std::uint64_t kFiveMinutes = 5 * 60 * 1000;
        if (m_ended.WaitFor(kFiveMinutes)) return;
        std::printf("\n[  FAILED  ] %s (hangs)\n", test.c_str());
        std::fflush(stdout);
        std::abort();
    }

    qv::platform::Event m_ended;  // by the steady clock, which no test changes
    std::thread m_thread;
};
