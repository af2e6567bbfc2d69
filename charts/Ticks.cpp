#include "charts/Ticks.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "charts/Numbers.h"

namespace qv::charts {
namespace {

constexpr double kDigits = 1e-11;  // the narrowest range relative to its values
constexpr double kLeastStep = 1e-300;
constexpr int kMostTicks = 200, kFewLogTicks = 3;

double Magnitude(const Range& range) {
    return std::max(std::abs(range.low), std::abs(range.high));
}

double PowerOfTen(int exponent) {
    return std::pow(10.0, exponent);
}

// The round numbers, 1, 2 and 5 times a power of ten, numbered consecutively: 0 is 1, 1 is 2, 2 is 5, 3 is 10.
double RoundNumber(int number) {
    constexpr double kFirst[] = {1, 2, 5};
    const int decade = number >= 0 ? number / 3 : -((2 - number) / 3);
    return kFirst[number - decade * 3] * PowerOfTen(decade);
}

// Returns the number of the greatest round number that is not above the value.
int RoundNumberBelow(double value) {
    int number = 3 * static_cast<int>(std::floor(std::log10(value))) + 3;
    while (RoundNumber(number) > value * (1 + 1e-12)) --number;
    return number;
}

int RoundNumberAbove(double value) {
    const int number = RoundNumberBelow(value);
    return RoundNumber(number) >= value * (1 - 1e-12) ? number : number + 1;
}

// Whether a logarithmic axis is so short that multiples of a step suit it better than powers of ten.
bool IsWithinDecade(const Range& range, int most) {
    return range.high / 10 <= range.low && RoundStep(range, most) <= range.low;
}

Range ToMultiples(Range range, int most) {
    // The wider range may need a greater step, which moves the ends again. This terminates with two steps or more; a
    // single step would never extend across zero.
    most = std::max(most, 2);
    double step = 0;
    while (const double next = RoundStep(range, most)) {
        if (next == step) break;
        step = next;
        range.low = Bounded(std::floor(range.low / step + 1e-9) * step);
        range.high = Bounded(std::ceil(range.high / step - 1e-9) * step);
    }
    return range;
}

std::vector<Tick> LogTicks(const Range& range, int most) {
    const int first = RoundNumberAbove(range.low), last = RoundNumberBelow(range.high);
    int stride = last - first <= std::max(most, kFewLogTicks) ? 1 : 3;
    while (stride > 1 && (last - first) / stride > most) stride += 3;
    std::vector<Tick> ticks;
    for (int number = first; number <= last; ++number) {
        if (number % stride != 0) continue;
        const double value = RoundNumber(number);
        ticks.push_back({value, TickText(value, value, value)});
    }
    return ticks;
}

}  // namespace

void Widen(Range& range, bool logarithmic) {
    if (range.IsEmpty()) range = logarithmic ? Range{1, 10} : Range{0, 1};
    if (logarithmic) {
        range.low = std::max(range.low, kLeastStep);
        range.high = std::max(range.high, range.low);
        if (range.high < range.low * 1.05)
            range = {range.low / 1.5, range.high < 1e300 ? range.high * 1.5 : range.high};
        return;
    }
    const double least = std::max(Magnitude(range) * kDigits, kLeastStep * 100);
    if (range.high / 2 - range.low / 2 >= least) return;
    const double room = Magnitude(range) < kLeastStep * 1000 ? 1 : Magnitude(range) / 2;
    range = {Bounded(range.low - room), Bounded(range.high + room)};
}

double RoundStep(const Range& range, int most) {
    constexpr double kGreatest = 1e308;  // of the round numbers
    const double wanted = range.high / most - range.low / most;
    if (wanted > kGreatest) return kGreatest;
    return RoundNumber(RoundNumberAbove(std::max(wanted, kLeastStep)));
}

void RoundOut(Range& range, int most, bool logarithmic) {
    const Range multiples = ToMultiples(range, most);
    if (!logarithmic || (IsWithinDecade(range, most) && IsWithinDecade(multiples, most))) {
        range = multiples;
        return;
    }
    range.low = RoundNumber(RoundNumberBelow(range.low));
    range.high = Bounded(RoundNumber(RoundNumberAbove(range.high)));
}

std::vector<Tick> NumberTicks(const Range& range, int most, bool logarithmic) {
    if (logarithmic && !IsWithinDecade(range, most)) return LogTicks(range, most);
    const double step = RoundStep(range, most), first = std::ceil(range.low / step - 1e-9);
    std::vector<Tick> ticks;
    for (int i = 0; i < kMostTicks; ++i) {
        const double value = (first + i) * step;
        if (!(value <= range.high + step * 1e-9) || IsMissing(value)) break;
        ticks.push_back({std::clamp(value, range.low, range.high), TickText(value, step, Magnitude(range))});
    }
    return ticks;
}

}  // namespace qv::charts
