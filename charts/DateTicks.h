#pragma once

#include "charts/Ticks.h"

namespace qv::charts {

/// Days since the epoch of COleDateTime on an even scale, on which negative dates run forwards too; missing for a date that
/// is not valid.
double EvenDays(double date);

/// Makes a range of a single date, or none, wide enough for an axis.
void WidenDates(Range& range);

/// Round local times within the range of even days, not more than about `most`: seconds, minutes and hours that divide the
/// next unit, days, Mondays, months, years by the rule 1, 2, 5.
std::vector<Tick> DateTicks(const Range& range, int most);

/// A date as hints and tables have it: "2026-05-17", with the time where it is not midnight.
CString DateText(double evenDays);

}  // namespace qv::charts
