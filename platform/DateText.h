#pragma once

/// @file How dates are written: by the C locale of the process, and by the system itself.

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
    Zone,          ///< a zone's name that may follow a time
    Separator,     ///< what a locale writes between the numbers of a date, other than points
    TimeSeparator  ///< the same for a time
};

struct DateWord {
    std::string text;  ///< in lower case, never empty
    DateWordKind kind;
    int month = 0;  ///< from 1, of a Month
};

/// The system's own reading of a date in the user's default locale, as days since 30 December 1899 with the time of day as
/// the fraction. Nothing where the text is none, and always nothing on Linux, which has no such service. The text holds no
/// zero bytes.
std::optional<double> ParseSystemDate(std::string_view text);

/// The order in which the locale writes a date in numbers: on Linux the current C locale, on Windows the user's.
DateOrder CurrentDateOrder();

/// The words of the current locale's dates and times. Of two with one text the first is more likely meant. None on
/// Windows, where ParseSystemDate knows them.
std::vector<DateWord> CurrentDateWords();
/// True when the current locale writes points between hours, minutes and seconds. Never on Windows, for the same reason.
bool CurrentTimesAreDotted();

/// The text of one of strftime's conversions a A b B c p x X in the current C locale. `dayOfWeek` counts from 0, Sunday.
std::string FormatLocaleDate(char conversion, const CalendarTime& time, int dayOfWeek);

}  // namespace qv::platform
