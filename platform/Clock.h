#pragma once

/// @file The library's clock: the time of day, the steady time used for timeouts, and pauses. Tests replace it, so that
/// nothing really waits.

#include <chrono>
#include <cstdint>

namespace qv::platform {

class IClock {
public:
    virtual ~IClock() = default;
    virtual std::chrono::system_clock::time_point Now() = 0;
    /// Monotonic; not affected by changes of the system's time.
    virtual std::chrono::steady_clock::time_point SteadyNow() = 0;
    virtual void Sleep(std::chrono::nanoseconds duration) = 0;
};

/// Sets a clock for the whole process, null for the real one, and returns the previous one. Not owned; must outlive the
/// call that replaces it. Thread-safe.
IClock* SetClock(IClock* clock);

/// Returns whether the real clock is used, so that waiting for the system takes the time that it reports.
bool IsRealTime();
/// Seconds since 1970 UTC.
std::int64_t SecondsNow();
std::chrono::steady_clock::time_point SteadyNow();
/// Suspends the calling thread for at least that duration.
void Sleep(std::chrono::nanoseconds duration);

}  // namespace qv::platform
