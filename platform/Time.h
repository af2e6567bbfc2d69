#pragma once

/// @file Calendar times and the system's time zone. The calendar is the proleptic Gregorian one; seconds of a day range
/// from 0 to 86399, so leap seconds do not exist.

#include <cstdint>
#include <optional>

namespace qv::platform {

/// File times count ticks of 100 ns since 1601-01-01 UTC, the start of a cycle of 400 Gregorian years.
inline constexpr std::int64_t kTicksPerSecond = 10'000'000;
inline constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;

struct CalendarTime {
    int year = 1970;
    int month = 1;  ///< from 1
    int day = 1;    ///< from 1
    int hour = 0;
    int minute = 0;
    int second = 0;

    friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

/// Convert calendar time to seconds since 1970 and back, without a zone. The fields must denote an existing moment.
std::int64_t ToSeconds(const CalendarTime& time);
CalendarTime FromSeconds(std::int64_t seconds);

/// Returns the local time at `seconds` since 1970 UTC, with the zone's offset at that time: on Linux by the zone
/// database for every year, on Windows by the zone's rules of that year, from 1601 on. nullopt if the system cannot
/// convert it.
std::optional<CalendarTime> ToLocal(std::int64_t seconds);

/// Returns the seconds since 1970 UTC at which local clocks show `local`. An ambiguous time is the first of the two; a
/// skipped time is interpreted with the offset before the skip, so half past a skipped two o'clock is half past three.
/// nullopt where ToLocal returns nullopt.
std::optional<std::int64_t> FromLocal(const CalendarTime& local);

/// Does the same without daylight saving time, using the zone's standard time.
std::optional<std::int64_t> FromStandard(const CalendarTime& local);

/// Sets the time zone of this process, by its name in the zone database; null restores the system's. Returns false,
/// without effect, on systems whose processes share one zone (Windows). Must not be called while other threads run.
bool UseTimeZone(const char* name);

}  // namespace qv::platform
