#pragma once

#include <cstdint>
#include <optional>

#include "qvcommon/framework/Types.h"

/// A file time: 100 ns steps since 1 January 1601 UTC, in two halves. It has the layout of the system's FILETIME, and
/// converts implicitly from it.
struct QvFileTime {
    DWORD dwLowDateTime = 0;   ///< the low 32 bits
    DWORD dwHighDateTime = 0;  ///< the high 32 bits

    /// 1601.
    constexpr QvFileTime() = default;
    /// From its two halves.
    constexpr QvFileTime(DWORD low, DWORD high) : dwLowDateTime(low), dwHighDateTime(high) {}
    /// From the system's FILETIME, or another type with such members.
    template <class T>
    requires requires(const T& time) { time.dwLowDateTime, time.dwHighDateTime; }
    constexpr QvFileTime(const T& time) : dwLowDateTime(time.dwLowDateTime), dwHighDateTime(time.dwHighDateTime) {}

    /// Each: Converts from and to the number of steps.
    static constexpr QvFileTime FromSteps(std::uint64_t steps) {
        return {static_cast<DWORD>(steps & 0xFFFFFFFF), static_cast<DWORD>(steps >> 32)};
    }
    /// Returns the number of steps.
    constexpr std::uint64_t Steps() const { return std::uint64_t{dwHighDateTime} << 32 | dwLowDateTime; }

    /// Returns whole seconds since 1970, negative before; nullopt from the year 30828 on, where the system's calendar
    /// ends.
    constexpr std::optional<std::int64_t> UnixSeconds() const {
        constexpr std::int64_t kSecondsTo1970 = 11644473600, kEndOfCalendar = 910670515200;
        const auto seconds = static_cast<std::int64_t>(Steps() / 10000000) - kSecondsTo1970;
        if (seconds >= kEndOfCalendar) return std::nullopt;
        return seconds;
    }
};
