#pragma once

#include <string>
#include <vector>

#include "charts/Scale.h"

namespace qv::charts {

struct Tick {
    double value;
    std::u32string text;
    /// What the text is part of, such as the year of a month; empty where it is that of the tick before.
    std::u32string context = {};
};

/// Makes a range of a single value, or none, or one too narrow for its digits, wide enough for an axis.
void Widen(Range& range, bool logarithmic);

/// The least step of the form 1, 2 or 5 times a power of ten that gives at most `most` steps within the range.
double RoundStep(const Range& range, int most);

/// Moves both ends outwards, to round values with about `most` ticks between.
void RoundOut(Range& range, int most, bool logarithmic);

/// Round values within the range: multiples of RoundStep, or on a logarithmic axis 1, 2 and 5 times powers of ten, powers
/// alone, or every second, third, … power, whichever are the most that are not more than `most` + 1; but multiples again
/// within a decade.
std::vector<Tick> NumberTicks(const Range& range, int most, bool logarithmic);

}  // namespace qv::charts
