#pragma once

#include <optional>
#include <string_view>

#include "platform/Time.h"

namespace qv {

/// Returns the fields of a date, rounded to seconds; nullopt if it is out of range.
std::optional<platform::CalendarTime> FieldsOf(double date);

/// Returns the date with these fields; nullopt if they denote no moment in range.
std::optional<double> DateOf(const platform::CalendarTime& fields);

/// Return the day from 0, Sunday, and from 0, 1 January.
int DayOfWeek(const platform::CalendarTime& fields);
int DayOfYear(const platform::CalendarTime& fields);

/// Parses a date by the library's own rules (see COleDateTime::ParseDateTime).
std::optional<double> ReadDate(std::string_view text);

}  // namespace qv
