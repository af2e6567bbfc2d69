#include "platform/DosTime.h"

#include <algorithm>

#include "platform/Time.h"

namespace qv::platform {

DosTime ToDosTime(std::int64_t seconds) {
    constexpr DosTime kFirst = {1 << 5 | 1, 0};
    constexpr DosTime kLast = {127 << 9 | 12 << 5 | 31, 23 << 11 | 59 << 5 | 29};
    const std::optional<CalendarTime> local = ToLocal(seconds);
    if (!local) return seconds < 0 ? kFirst : kLast;
    if (local->year < 1980) return kFirst;
    if (local->year > 2107) return kLast;
    return {static_cast<std::uint16_t>((local->year - 1980) << 9 | local->month << 5 | local->day),
            static_cast<std::uint16_t>(local->hour << 11 | local->minute << 5 | local->second / 2)};
}

std::int64_t FromDosTime(const DosTime& time) {
    const CalendarTime local = {1980 + (time.date >> 9), (time.date >> 5) & 15, time.date & 31,
                                time.time >> 11,         (time.time >> 5) & 63, (time.time & 31) * 2};
    const bool inRange = local.month >= 1 && local.month <= 12 && local.day >= 1 && local.hour < 24 &&
                         local.minute < 60 && local.second < 60;
    // A day beyond the end of the month would be normalized to another one.
    if (!inRange || FromSeconds(ToSeconds(local)) != local) return -1;
    return FromLocal(local).value_or(-1);
}

}  // namespace qv::platform
