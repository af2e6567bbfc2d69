#pragma once

#include "charts/Ticks.h"

namespace qv::charts {

/// Converts a date to days since the epoch of COleDateTime on a linear scale, on which negative dates also run
/// forwards; missing for an invalid date.
double EvenDays(double date);

/// Makes an empty range, or one of a single date, wide enough for an axis.
void WidenDates(Range& range);

/// Returns about `most` round local times within the range of linear days: seconds, minutes and hours that divide the
/// next unit, days, Mondays, months, or years in steps of 1, 2 or 5 times a power of ten.
std::vector<Tick> DateTicks(const Range& range, int most);

/// Formats a date for tooltips and tables: "2026-05-17", with the time unless it is midnight.
CString DateText(double evenDays);

}  // namespace qv::charts
