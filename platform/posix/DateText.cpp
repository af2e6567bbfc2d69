#include "platform/DateText.h"

#include <langinfo.h>
#include <time.h>

#include <algorithm>
#include <cstring>

#include "platform/Ascii.h"
#include "platform/Text.h"
#include "platform/posix/text/TextRules.h"

namespace qv::platform {
namespace {

void AddWord(std::vector<DateWord>& words, std::string_view text, DateWordKind kind, int month = 0) {
    text = ascii::Trimmed(text, ascii::IsBlank);
    if (!text.empty()) words.push_back({ToLower(FromLocale(text)), kind, month});
}

void AddNames(std::vector<DateWord>& words, nl_item first, int count, DateWordKind kind) {
    for (int i = 0; i < count; ++i) AddWord(words, ::nl_langinfo(first + i), kind, i + 1);
}

// Returns the position after the conversion whose percent sign is at `at`.
std::size_t EndOfConversion(std::string_view format, std::size_t at) {
    constexpr std::string_view modifiers = "-_0^#EO";
    do ++at;
    while (at < format.size() && modifiers.find(format[at]) != modifiers.npos);
    return std::min(at + 1, format.size());
}

// Collects the text of a format other than conversions, dots and blanks; it belongs to the preceding conversion.
void AddLiterals(std::vector<DateWord>& words, std::string_view format) {
    constexpr std::string_view points = "%/-.,: \t";
    constexpr std::string_view ofTimes = "HIklMSTRrpP";
    DateWordKind kind = DateWordKind::Separator;
    for (std::size_t i = 0; i < format.size();) {
        if (format[i] == '%') {
            i = EndOfConversion(format, i);
            const bool time = ofTimes.find(format[i - 1]) != ofTimes.npos;
            kind = time ? DateWordKind::TimeSeparator : DateWordKind::Separator;
            continue;
        }
        const std::size_t end = std::min(format.find_first_of(points, i), format.size());
        AddWord(words, format.substr(i, end - i), kind);
        i = std::max(end, i + 1);
    }
}

// Returns the expansion of %c without the zone: a date has none, and the blank before it would remain.
std::string DateAndTimeFormat() {
    constexpr std::string_view zone = " %Z";
    std::string format = ::nl_langinfo(D_T_FMT);
    for (std::size_t at = format.find(zone); at != format.npos; at = format.find(zone)) format.erase(at, zone.size());
    return format;
}

}  // namespace

std::optional<double> ParseSystemDate(std::string_view) {
    return std::nullopt;
}

DateOrder CurrentDateOrder() {
    constexpr std::string_view days = "de", months = "mbBhD", years = "yYFCG";
    const std::string_view format = ::nl_langinfo(D_FMT);
    for (std::size_t i = format.find('%'); i < format.size(); i = format.find('%', i)) {
        i = EndOfConversion(format, i);
        const char conversion = format[i - 1];
        if (days.find(conversion) != days.npos) return DateOrder::DayMonthYear;
        if (months.find(conversion) != months.npos) return DateOrder::MonthDayYear;
        if (years.find(conversion) != years.npos) return DateOrder::YearMonthDay;
    }
    return DateOrder::YearMonthDay;
}

std::vector<DateWord> CurrentDateWords() {
    std::vector<DateWord> words;
    for (const nl_item first : {MON_1, ALTMON_1, ABMON_1}) AddNames(words, first, 12, DateWordKind::Month);
    AddWord(words, ::nl_langinfo(AM_STR), DateWordKind::Am);
    AddWord(words, ::nl_langinfo(PM_STR), DateWordKind::Pm);
    for (const nl_item format : {D_FMT, T_FMT, D_T_FMT, T_FMT_AMPM}) AddLiterals(words, ::nl_langinfo(format));
    for (const nl_item first : {DAY_1, ABDAY_1}) AddNames(words, first, 7, DateWordKind::Weekday);
    return words;
}

bool CurrentTimesAreDotted() {
    return std::strstr(::nl_langinfo(T_FMT), ".%M");
}

std::string FormatLocaleDate(char conversion, const CalendarTime& time, int dayOfWeek) {
    struct tm fields = {};
    fields.tm_year = time.year - 1900;
    fields.tm_mon = time.month - 1;
    fields.tm_mday = time.day;
    fields.tm_hour = time.hour;
    fields.tm_min = time.minute;
    fields.tm_sec = time.second;
    fields.tm_wday = dayOfWeek;
    fields.tm_isdst = -1;
    const std::string format = conversion == 'c' ? DateAndTimeFormat() : std::string{'%', conversion};
    char text[512];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"  // a single conversion, one of those listed in the contract
    return FromLocale({text, ::strftime(text, sizeof text, format.c_str(), &fields)});
#pragma GCC diagnostic pop
}

}  // namespace qv::platform
