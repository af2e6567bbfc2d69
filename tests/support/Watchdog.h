#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>

/// Ends the test program when its scope takes longer than any test may take, under sanitizers too, and names the test as
/// the framework names one that failed.
class Watchdog {
public:
    explicit Watchdog(std::string test)
        : m_thread([test = std::move(test)](const std::stop_token& stop) {
              std::mutex mutex;
              std::condition_variable_any ended;
              std::unique_lock lock(mutex);
              if (ended.wait_for(lock, stop, std::chrono::minutes(5), [&] { return stop.stop_requested(); })) return;
              std::printf("\n[  FAILED  ] %s (hangs)\n", test.c_str());
              std::fflush(stdout);
              std::abort();
          }) {}

private:
    std::jthread m_thread;
};
