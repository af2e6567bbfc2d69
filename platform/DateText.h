#pragma once

/// @file Formatting and parsing of dates by the C locale of the process, and by the system.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Time.h"

namespace qv::platform {

enum class DateOrder { DayMonthYear, MonthDayYear, YearMonthDay };

enum class DateWordKind {
    Month,
    Weekday,
    Am,
    Pm,
    Zone,          ///< a zone's name, which may follow a time
    Separator,     ///< separates the numbers of a date, other than dots
    TimeSeparator  ///< the same for a time
};

struct DateWord {
    std::string text;  ///< in lower case, never empty
    DateWordKind kind;
    int month = 0;  ///< from 1, of a Month
};

/// Parses a date by the system, in the user's default locale, into days since 30 December 1899 with the time of day as
/// the fraction. Returns nullopt if the text is not a date, and always on Linux, which has no such service. The text
/// must not contain zero bytes.
std::optional<double> ParseSystemDate(std::string_view text);

/// Returns the order of the numbers of a date in the locale: on Linux the current C locale, on Windows the user's.
DateOrder CurrentDateOrder();

/// Returns the words of the current locale's dates and times. Of two with the same text the first is more likely meant.
/// Empty on Windows, where ParseSystemDate handles them.
std::vector<DateWord> CurrentDateWords();
/// Returns whether the current locale writes dots between hours, minutes and seconds. Always false on Windows, for the
/// same reason.
bool CurrentTimesAreDotted();

/// Formats one of strftime's conversions a A b B c p x X in the current C locale. `dayOfWeek` counts from 0, Sunday.
std::string FormatLocaleDate(char conversion, const CalendarTime& time, int dayOfWeek);

}  // namespace qv::platform
