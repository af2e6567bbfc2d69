#include "qvcommon/framework/DateTime.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>

#include "framework/DateFields.h"
#include "platform/Clock.h"
#include "platform/DateText.h"

using qv::platform::CalendarTime;

namespace {

constexpr std::int64_t kDaySeconds = 86400;
constexpr std::int64_t kDaysTo1970 = 25569;
constexpr double kFirstDay = -657434;  // 1 January 100
constexpr double kLastDay = 2958465;   // 31 December 9999
constexpr double kTooLongSpan = kLastDay - kFirstDay + 1;

bool InRange(double date) {
    return date > kFirstDay - 1 && date < kLastDay + 1;  // false for NaN
}

// Convert between dates and linear day numbers.
double Flow(double date) {
    const double day = std::trunc(date);
    return day + std::abs(date - day);
}

double FromFlow(double flow) {
    const double day = std::floor(flow);
    const double time = flow - day;
    if (time >= 1) return day + 1;  // just before midnight, but rounded up by the double
    return day < 0 ? day - time : flow;
}

bool IsDate(int year, int month, int day) {
    using namespace std::chrono;
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) return false;
    return year_month_day(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                          std::chrono::day(static_cast<unsigned>(day)))
        .ok();
}

bool IsTime(int hour, int minute, int second) {
    return hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
}

}  // namespace

namespace qv {

std::optional<CalendarTime> FieldsOf(double date) {
    if (!InRange(date)) return std::nullopt;
    const double day = std::trunc(date);
    const auto time = std::int64_t{std::llround(std::abs(date - day) * kDaySeconds)};
    const auto last = (static_cast<std::int64_t>(kLastDay) - kDaysTo1970 + 1) * kDaySeconds - 1;
    return platform::FromSeconds(std::min((static_cast<std::int64_t>(day) - kDaysTo1970) * kDaySeconds + time, last));
}

std::optional<double> DateOf(const CalendarTime& fields) {
    if (!IsDate(fields.year, fields.month, fields.day)) return std::nullopt;
    if (!IsTime(fields.hour, fields.minute, fields.second)) return std::nullopt;
    const std::int64_t days = platform::ToSeconds({fields.year, fields.month, fields.day}) / kDaySeconds;
    const auto day = static_cast<double>(days + kDaysTo1970);
    const double time = (fields.hour * 3600 + fields.minute * 60 + fields.second) / double{kDaySeconds};
    return day < 0 ? day - time : day + time;
}

int DayOfWeek(const CalendarTime& fields) {
    constexpr std::int64_t kSunday = -719163;  // 31 December of the year 0
    return static_cast<int>((platform::ToSeconds({fields.year, fields.month, fields.day}) / kDaySeconds - kSunday) % 7);
}

int DayOfYear(const CalendarTime& fields) {
    const std::int64_t first = platform::ToSeconds({fields.year, 1, 1});
    return static_cast<int>((platform::ToSeconds({fields.year, fields.month, fields.day}) - first) / kDaySeconds);
}

}  // namespace qv

COleDateTimeSpan::COleDateTimeSpan(double days)
    : m_span(days), m_status(std::abs(days) < kTooLongSpan ? valid : invalid) {}

COleDateTimeSpan::COleDateTimeSpan(long days, int hours, int minutes, int seconds)
    : COleDateTimeSpan(static_cast<double>(days) + hours / 24.0 + minutes / (24.0 * 60) + seconds / (24.0 * 60 * 60)) {}

COleDateTimeSpan COleDateTimeSpan::operator-() const {
    COleDateTimeSpan span = *this;
    span.m_span = -m_span;
    return span;
}

COleDateTime::COleDateTime(double days) : m_dt(days), m_status(InRange(days) ? valid : invalid) {}

COleDateTime::COleDateTime(std::int64_t seconds) {
    SetLocalTime(seconds);
}

COleDateTime::COleDateTime(const QvFileTime& time) {
    if (const std::optional<std::int64_t> seconds = time.UnixSeconds())
        SetLocalTime(*seconds);
    else
        m_status = invalid;
}

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second) {
    SetDateTime(year, month, day, hour, minute, second);
}

COleDateTime COleDateTime::GetCurrentTime() {
    return COleDateTime(qv::platform::SecondsNow());
}

namespace {

// Returns a field, or `error` for an invalid date.
template <class Field>
int FieldOf(const COleDateTime& date, Field field) {
    if (date.m_status != COleDateTime::valid) return COleDateTime::error;
    const std::optional<CalendarTime> fields = qv::FieldsOf(date.m_dt);
    return fields ? std::invoke(field, *fields) : COleDateTime::error;
}

}  // namespace

int COleDateTime::GetYear() const {
    return FieldOf(*this, &CalendarTime::year);
}

int COleDateTime::GetMonth() const {
    return FieldOf(*this, &CalendarTime::month);
}

int COleDateTime::GetDay() const {
    return FieldOf(*this, &CalendarTime::day);
}

int COleDateTime::GetHour() const {
    return FieldOf(*this, &CalendarTime::hour);
}

int COleDateTime::GetMinute() const {
    return FieldOf(*this, &CalendarTime::minute);
}

int COleDateTime::GetSecond() const {
    return FieldOf(*this, &CalendarTime::second);
}

int COleDateTime::GetDayOfWeek() const {
    return FieldOf(*this, [](const CalendarTime& fields) { return qv::DayOfWeek(fields) + 1; });
}

int COleDateTime::GetDayOfYear() const {
    return FieldOf(*this, [](const CalendarTime& fields) { return qv::DayOfYear(fields) + 1; });
}

int COleDateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second) {
    const std::optional<double> date = qv::DateOf({year, month, day, hour, minute, second});
    m_status = date ? valid : invalid;
    if (date) m_dt = *date;
    return m_status;
}

void COleDateTime::SetLocalTime(std::int64_t seconds) {
    const std::optional<CalendarTime> local = qv::platform::ToLocal(seconds);
    const std::optional<double> date = local ? qv::DateOf(*local) : std::nullopt;
    m_status = date ? valid : invalid;
    if (date) m_dt = *date;
}

bool COleDateTime::ParseDateTime(std::string_view text) {
    std::optional<double> date;
    if (text.find('\0') == text.npos) date = qv::platform::ParseSystemDate(text);
    if (!date) date = qv::ReadDate(text);
    if (date)
        *this = COleDateTime(*date);
    else
        m_status = invalid;
    return m_status == valid;
}

COleDateTime COleDateTime::operator+(const COleDateTimeSpan& span) const {
    COleDateTime sum;
    if (m_status == valid && span.m_status == COleDateTimeSpan::valid)
        sum = COleDateTime(FromFlow(Flow(m_dt) + span.m_span));
    else if (m_status == null || span.m_status == COleDateTimeSpan::null)
        sum.m_status = null;
    else
        sum.m_status = invalid;
    return sum;
}

COleDateTimeSpan COleDateTime::operator-(const COleDateTime& other) const {
    COleDateTimeSpan span;
    if (m_status == valid && other.m_status == valid)
        span = COleDateTimeSpan(Flow(m_dt) - Flow(other.m_dt));
    else if (m_status == null || other.m_status == null)
        span.m_status = COleDateTimeSpan::null;
    else
        span.m_status = COleDateTimeSpan::invalid;
    return span;
}

std::partial_ordering operator<=>(const COleDateTime& a, const COleDateTime& b) {
    if (a.m_status == COleDateTime::valid && b.m_status == COleDateTime::valid) return Flow(a.m_dt) <=> Flow(b.m_dt);
    return a.m_status == b.m_status ? std::partial_ordering::equivalent : std::partial_ordering::unordered;
}
