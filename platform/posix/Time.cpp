#include "platform/Time.h"

#include <stdlib.h>
#include <time.h>

#include <limits>

namespace qv::platform {

std::optional<CalendarTime> ToLocal(std::int64_t seconds) {
    const time_t time = seconds;
    struct tm local = {};
    if (!::localtime_r(&time, &local) || local.tm_year > std::numeric_limits<int>::max() - 1900) return std::nullopt;
    return CalendarTime{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                        local.tm_hour,        local.tm_min,     local.tm_sec};
}

std::optional<std::int64_t> FromStandard(const CalendarTime& local) {
    struct tm fields = {};
    fields.tm_year = local.year - 1900;
    fields.tm_mon = local.month - 1;
    fields.tm_mday = local.day;
    fields.tm_hour = local.hour;
    fields.tm_min = local.minute;
    fields.tm_sec = local.second;
    fields.tm_isdst = 0;
    fields.tm_wday = -1;  // remains on failure, since -1 is also a valid time
    const time_t seconds = ::mktime(&fields);
    if (fields.tm_wday < 0) return std::nullopt;
    return seconds;
}

bool UseTimeZone(const char* name) {
    if (name)
        ::setenv("TZ", name, 1);
    else
        ::unsetenv("TZ");
    ::tzset();
    return true;
}

}  // namespace qv::platform
