#include "platform/Time.h"

#include <chrono>

namespace qv::platform {
namespace {

constexpr std::int64_t kDay = 86400;

std::optional<std::int64_t> OffsetAt(std::int64_t seconds) {
    const std::optional<CalendarTime> local = ToLocal(seconds);
    if (!local) return std::nullopt;
    return ToSeconds(*local) - seconds;
}

}  // namespace

std::int64_t ToSeconds(const CalendarTime& time) {
    using namespace std::chrono;
    const sys_days date =
        year_month_day(year(time.year), month(static_cast<unsigned>(time.month)), day(static_cast<unsigned>(time.day)));
    return date.time_since_epoch().count() * kDay + time.hour * 3600 + time.minute * 60 + time.second;
}

CalendarTime FromSeconds(std::int64_t seconds) {
    using namespace std::chrono;
    const std::int64_t days = seconds / kDay - (seconds % kDay < 0);
    const int rest = static_cast<int>(seconds - days * kDay);
    const year_month_day date{sys_days(std::chrono::days(days))};
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            rest / 3600,
            rest / 60 % 60,
            rest % 60};
}

// A zone changes its clocks at most once within two days, so the offsets a day before and a day after are the only
// candidates.
std::optional<std::int64_t> FromLocal(const CalendarTime& local) {
    const std::int64_t shown = ToSeconds(local);
    const std::optional<std::int64_t> before = OffsetAt(shown - kDay);
    const std::optional<std::int64_t> after = OffsetAt(shown + kDay);
    if (!before || !after) return std::nullopt;
    if (before != after && OffsetAt(shown - *before) != before && OffsetAt(shown - *after) == after)
        return shown - *after;
    return shown - *before;
}

}  // namespace qv::platform
