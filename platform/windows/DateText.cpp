#include "platform/DateText.h"

#include <windows.h>
// windows.h must come first.
#include <oleauto.h>

#include <cstdio>
#include <ctime>

#include "platform/Text.h"
#include "platform/windows/System.h"

namespace qv::platform {
namespace {

// The run time rejects years before its epoch, so these use the form of the "C" locale.
std::string FormatEarlyDate(char conversion, const CalendarTime& time) {
    char text[64];
    const int date = std::snprintf(text, sizeof text, "%02d/%02d/%02d", time.month, time.day, time.year % 100);
    if (conversion == 'c')
        std::snprintf(text + date, sizeof text - date, " %02d:%02d:%02d", time.hour, time.minute, time.second);
    return text;
}

}  // namespace

std::optional<double> ParseSystemDate(std::string_view text) {
    std::u16string wide = ToWide(text);
    DATE date = 0;
    const auto characters = reinterpret_cast<OLECHAR*>(wide.data());
    if (::VarDateFromStr(characters, LOCALE_USER_DEFAULT, 0, &date) != S_OK) return std::nullopt;
    return date;
}

DateOrder CurrentDateOrder() {
    DWORD order = 0;
    constexpr LCTYPE type = LOCALE_IDATE | LOCALE_RETURN_NUMBER;
    const int size = sizeof order / sizeof(wchar_t);
    // Defaults to the first order.
    sys::GetLocaleInfoW(LOCALE_USER_DEFAULT, type, reinterpret_cast<wchar_t*>(&order), size).IgnoreError();
    return order == 1 ? DateOrder::DayMonthYear : order == 2 ? DateOrder::YearMonthDay : DateOrder::MonthDayYear;
}

std::vector<DateWord> CurrentDateWords() {
    return {};
}

bool CurrentTimesAreDotted() {
    return false;
}

std::string FormatLocaleDate(char conversion, const CalendarTime& time, int dayOfWeek) {
    const bool showsYear = conversion == 'c' || conversion == 'x';
    if (showsYear && time.year < 1900) return FormatEarlyDate(conversion, time);
    std::tm fields{};
    fields.tm_year = showsYear ? time.year - 1900 : 100;
    fields.tm_mon = time.month - 1;
    fields.tm_mday = time.day;
    fields.tm_hour = time.hour;
    fields.tm_min = time.minute;
    fields.tm_sec = time.second;
    fields.tm_wday = dayOfWeek;
    const char format[] = {'%', conversion, 0};
    char text[512];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"  // a single conversion, one of those listed in the contract
    return {text, std::strftime(text, sizeof text, format, &fields)};
#pragma GCC diagnostic pop
}

}  // namespace qv::platform
