#pragma once

/// @file The library's clock: the time of day, the steady time by which timeouts run, and pauses. Tests put another one in
/// its place, so that nothing really waits.

#include <chrono>
#include <cstdint>

namespace qv::platform {

class IClock {
public:
    virtual ~IClock() = default;
    virtual std::chrono::system_clock::time_point Now() = 0;
    /// Never runs backwards; a change of the system's time does not affect it.
    virtual std::chrono::steady_clock::time_point SteadyNow() = 0;
    virtual void Sleep(std::chrono::nanoseconds duration) = 0;
};

/// Puts a clock in force for the whole process, null for the real one, and returns the previous one. Not owned; it must
/// outlive the call that replaces it. Safe from any thread.
IClock* SetClock(IClock* clock);

/// Whether the real clock is in force, so that waiting for the system takes the time that it says.
bool IsRealTime();
/// Seconds since 1970 UTC.
std::int64_t SecondsNow();
std::chrono::steady_clock::time_point SteadyNow();
/// Suspends the calling thread for at least that long.
void Sleep(std::chrono::nanoseconds duration);

}  // namespace qv::platform
