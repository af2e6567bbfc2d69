#include "qvcommon/TimeHelper.h"

#include <limits>

#include "core/StandardTime.h"
#include "framework/DateFields.h"
#include "platform/Time.h"

using qv::platform::CalendarTime;

namespace {

constexpr double kDaysPerYear = 365.25;
constexpr double kYearsPerDay = 0.0027378507871321013;
constexpr double kSecond = 1.0 / 86400;  // in days

bool IsLeapYear(int year) {
    return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
}

void SetTimeOfDay(COleDateTime& date, int hour, int minute, int second) {
    if (date.GetStatus() == COleDateTime::valid)
        date.SetDateTime(date.GetYear(), date.GetMonth(), date.GetDay(), hour, minute, second);
}

std::optional<CalendarTime> FieldsOf(const COleDateTime& date) {
    return date.GetStatus() == COleDateTime::valid ? qv::FieldsOf(date.m_dt) : std::nullopt;
}

void Replace(COleDateTime& date, const std::optional<CalendarTime>& fields) {
    if (!fields) return;
    const COleDateTime result(fields->year, fields->month, fields->day, fields->hour, fields->minute, fields->second);
    if (result.GetStatus() == COleDateTime::valid) date = result;
}

long ToLong(const std::optional<std::int64_t>& seconds) {
    const bool fits =
        seconds && *seconds >= std::numeric_limits<long>::min() && *seconds <= std::numeric_limits<long>::max();
    return fits ? static_cast<long>(*seconds) : -1;
}

}  // namespace

int CTimeHelper::GetWeek(const COleDateTime& date) {
    return (date.GetDayOfYear() - 1) / 7 + 1;
}

void CTimeHelper::GetWeekAndYear(const COleDateTime& date, int& week, int& year) {
    year = date.GetYear();
    week = GetWeek(date);
}

int CTimeHelper::GetLastDayOfMonth(int year, int month) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12) return 0;
    return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

int CTimeHelper::GetDaysInMonth(int month, int year) {
    return GetLastDayOfMonth(year, month);
}

void CTimeHelper::ToStartOfDay(COleDateTime& date) {
    SetTimeOfDay(date, 0, 0, 0);
}

void CTimeHelper::ToEndOfDay(COleDateTime& date) {
    SetTimeOfDay(date, 23, 59, 59);
}

void CTimeHelper::RoundMinutes(COleDateTime& date, int keepDate) {
    if (date.GetStatus() != COleDateTime::valid) return;
    int hour = date.GetHour();
    int minute = date.GetMinute() + (date.GetSecond() >= 30);
    int second = 0;
    if (minute == 60) {
        const bool midnight = hour == 23;
        minute = midnight ? 59 : 0;
        second = midnight ? 59 : 0;
        hour += !midnight;
    }
    if (keepDate)
        SetTimeOfDay(date, hour, minute, second);
    else
        date.SetTime(hour, minute, second);
}

void CTimeHelper::AdjustWithinRange(COleDateTime& date, int year, int week) {
    int ownWeek = 0;
    int ownYear = 0;
    GetWeekAndYear(date, ownWeek, ownYear);
    if (ownYear < year || (ownYear == year && ownWeek < week)) {
        date = COleDateTime(year, 1, 1, 0, 0, 0) + 7 * (week - 1.0);
    } else if (ownYear > year || ownWeek > week) {
        if (week == 53)
            date = COleDateTime(year + 1, 1, 1, 0, 0, 0) + -kSecond;
        else
            date = COleDateTime(year, 1, 1, 23, 59, 59) + (7.0 * week - 1);
    }
}

CString CTimeHelper::ToStdDateTime(const COleDateTime& date) {
    return date.Format("%d %b %Y %H:%M:%S");
}

CString CTimeHelper::GetLongDateString(const COleDateTime& date) {
    return date.Format("%B %d %Y, %H:%M:%S");
}

long CTimeHelper::GetTimeT(const COleDateTime& date) {
    const std::optional<CalendarTime> local = FieldsOf(date);
    return local ? ToLong(qv::platform::FromLocal(*local)) : -1;
}

long CTimeHelper::FileTimeToUnixTime(const QvFileTime& time) {
    return ToLong(qv::StandardSeconds(time));
}

std::optional<std::int64_t> qv::StandardSeconds(const QvFileTime& time) {
    const std::optional<std::int64_t> seconds = time.UnixSeconds();
    return seconds ? platform::FromStandard(platform::FromSeconds(*seconds)) : 0;
}

void CTimeHelper::ConvertToUtc(COleDateTime& date) {
    const std::optional<CalendarTime> local = FieldsOf(date);
    if (!local) return;
    if (const std::optional<std::int64_t> seconds = qv::platform::FromLocal(*local))
        Replace(date, qv::platform::FromSeconds(*seconds));
}

void CTimeHelper::ConvertToLocal(COleDateTime& date) {
    if (const std::optional<CalendarTime> utc = FieldsOf(date))
        Replace(date, qv::platform::ToLocal(qv::platform::ToSeconds(*utc)));
}

double CTimeHelper::GetAvWorkHoursPerWeek(double hoursPerWeek, double a, double b) {
    return hoursPerWeek * (kDaysPerYear - (a + b)) * kYearsPerDay;
}

double CTimeHelper::GetAvWorkHoursPerDay(double hoursPerWeek, double a, double b) {
    return GetAvWorkHoursPerWeek(hoursPerWeek, a, b) / 7;
}

double CTimeHelper::GetAvWorkHoursPerWorkDay(double hoursPerWeek, double workDaysPerWeek, double a, double b) {
    return GetAvWorkHoursPerWeek(hoursPerWeek, a, b) / workDaysPerWeek;
}
