#pragma once

/// @file File times and sizes, which the system's records store in two halves of 32 bits.

#include <windows.h>

#include <cstdint>

#include "platform/Time.h"

namespace qv::platform {

inline std::uint64_t Joined(DWORD high, DWORD low) {
    return std::uint64_t{high} << 32 | low;
}

inline std::uint64_t TicksOf(const FILETIME& time) {
    return Joined(time.dwHighDateTime, time.dwLowDateTime);
}

/// Returns the ticks since 1601 of a time in seconds since 1970.
inline std::int64_t TicksAt(std::int64_t seconds) {
    return (seconds + kSecondsFrom1601To1970) * kTicksPerSecond;
}

/// Returns seconds since 1970; -1 for a time that the file system does not store.
inline std::int64_t SecondsOf(const FILETIME& time) {
    const std::uint64_t ticks = TicksOf(time);
    if (ticks == 0) return -1;
    return static_cast<std::int64_t>(ticks - static_cast<std::uint64_t>(TicksAt(0))) / kTicksPerSecond;
}

inline FILETIME FileTimeAt(std::int64_t seconds) {
    const auto ticks = static_cast<std::uint64_t>(TicksAt(seconds));
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

}  // namespace qv::platform
