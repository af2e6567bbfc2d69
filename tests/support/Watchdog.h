#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <stop_token>
#include <thread>

/// Ends the test program when its scope takes longer than anything there may take: threads that wait for each other for
/// ever fail a test by name instead of hanging the suite.
class Watchdog {
public:
    explicit Watchdog(const char* what, std::chrono::seconds patience = std::chrono::seconds(120))
        : m_thread([=](const std::stop_token& stop) {
              std::mutex mutex;
              std::condition_variable_any ended;
              std::unique_lock lock(mutex);
              if (ended.wait_for(lock, stop, patience, [&] { return stop.stop_requested(); })) return;
              std::fprintf(stderr, "%s hangs\n", what);
              std::abort();
          }) {}

private:
    std::jthread m_thread;
};
