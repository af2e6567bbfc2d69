#pragma once

/// @file Calendar times and the system's time zone. The calendar is the Gregorian one, carried on before 1582; seconds of a
/// day run from 0 to 86399, so leap seconds do not exist.

#include <cstdint>
#include <optional>

namespace qv::platform {

/// File times count ticks of 100 ns since 1601-01-01 UTC, the beginning of a cycle of 400 Gregorian years.
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

/// Calendar time to seconds since 1970 and back, without any zone. The fields have to name a moment that exists.
std::int64_t ToSeconds(const CalendarTime& time);
CalendarTime FromSeconds(std::int64_t seconds);

/// The local time at `seconds` since 1970 UTC, by the rules that the system has for the zone at that time: Linux by the
/// zone database for every year, Windows by the zone's rules of that year, from 1601 on. Nothing where the system has
/// no answer.
std::optional<CalendarTime> ToLocal(std::int64_t seconds);

/// The seconds since 1970 UTC at which local clocks show `local`. Where they show it twice, the first time counts; a time
/// that they skip is read by the clock before the skip, so half past a skipped two o'clock is half past three. Nothing
/// where ToLocal has no answer.
std::optional<std::int64_t> FromLocal(const CalendarTime& local);

/// The same for clocks that do not know daylight saving time and stay on the zone's standard time.
std::optional<std::int64_t> FromStandard(const CalendarTime& local);

/// Gives this process a time zone of its own, by its name in the zone database; null goes back to the system's. False, and
/// nothing is done, on systems whose processes all share one zone (Windows). Not while other threads run.
bool UseTimeZone(const char* name);

}  // namespace qv::platform
