#pragma once

#include <string>
#include <vector>

#include "charts/Scale.h"

namespace qv::charts {

struct Tick {
    double value;
    std::u32string text;
    /// The larger unit that the text belongs to, such as the year of a month; empty if the previous tick has the same.
    std::u32string context = {};
};

/// Makes a range that is empty, of a single value, or too narrow for its digits, wide enough for an axis.
void Widen(Range& range, bool logarithmic);

/// Returns the least step of the form 1, 2 or 5 times a power of ten that gives at most `most` steps within the range.
double RoundStep(const Range& range, int most);

/// Extends both ends to round values with about `most` ticks between.
void RoundOut(Range& range, int most, bool logarithmic);

/// Returns round values within the range: multiples of RoundStep; on a logarithmic axis 1, 2 and 5 times powers of
/// ten, powers alone, or every second, third, … power, the densest of these with at most `most` + 1 values; within a
/// decade again multiples.
std::vector<Tick> NumberTicks(const Range& range, int most, bool logarithmic);

}  // namespace qv::charts
