#include "platform/Time.h"

#include "platform/windows/System.h"

namespace qv::platform {
namespace {

// The range of the system's conversions, from the first file time to the last whole year.
constexpr int kFirstYear = 1601, kLastYear = 30827;
constexpr std::int64_t kFirstSecond = -kSecondsFrom1601To1970, kLastSecond = 910670515199;

std::optional<TIME_ZONE_INFORMATION> ZoneIn(int year) {
    if (year < kFirstYear || year > kLastYear) return std::nullopt;
    TIME_ZONE_INFORMATION zone{};
    if (sys::GetTimeZoneInformationForYear(static_cast<USHORT>(year), nullptr, &zone).ok()) return zone;
    // A zone without a history has the current rules for every year.
    if (!sys::GetTimeZoneInformation(&zone).ok()) return std::nullopt;
    return zone;
}

SYSTEMTIME ToSystemTime(const CalendarTime& time) {
    SYSTEMTIME system{};
    system.wYear = static_cast<WORD>(time.year);
    system.wMonth = static_cast<WORD>(time.month);
    system.wDay = static_cast<WORD>(time.day);
    system.wHour = static_cast<WORD>(time.hour);
    system.wMinute = static_cast<WORD>(time.minute);
    system.wSecond = static_cast<WORD>(time.second);
    return system;
}

}  // namespace

std::optional<CalendarTime> ToLocal(std::int64_t seconds) {
    if (seconds < kFirstSecond || seconds > kLastSecond) return std::nullopt;
    const CalendarTime time = FromSeconds(seconds);
    const std::optional<TIME_ZONE_INFORMATION> zone = ZoneIn(time.year);
    const SYSTEMTIME utc = ToSystemTime(time);
    SYSTEMTIME local{};
    if (!zone || !::SystemTimeToTzSpecificLocalTime(&*zone, &utc, &local)) return std::nullopt;
    return CalendarTime{local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond};
}

std::optional<std::int64_t> FromStandard(const CalendarTime& local) {
    const std::optional<TIME_ZONE_INFORMATION> zone = ZoneIn(local.year);
    if (!zone) return std::nullopt;
    return ToSeconds(local) + (zone->Bias + zone->StandardBias) * std::int64_t{60};
}

bool UseTimeZone(const char*) {
    return false;
}

}  // namespace qv::platform
