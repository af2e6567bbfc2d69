#pragma once

#include <optional>
#include <string_view>

#include "platform/Time.h"

namespace qv {

/// The fields of a date, to the nearest second; nothing when it is out of range.
std::optional<platform::CalendarTime> FieldsOf(double date);

/// The date with these fields; nothing when they name no moment in range.
std::optional<double> DateOf(const platform::CalendarTime& fields);

/// From 0, Sunday, and from 0, 1 January.
int DayOfWeek(const platform::CalendarTime& fields);
int DayOfYear(const platform::CalendarTime& fields);

/// Reads a date by the library's own rules (see COleDateTime::ParseDateTime).
std::optional<double> ReadDate(std::string_view text);

}  // namespace qv
