#include "qvcommon/MathHelper.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <numeric>

#include "core/FirstOccurrences.h"

void CMathHelper::CumulizeArray(CDoubleArray& values) {
    std::partial_sum(values.begin(), values.end(), values.begin());
}

int CMathHelper::GetIndexHighestAtOrUnder(std::span<const double> values, double limit) {
    auto best = values.end();
    for (auto i = values.begin(); i != values.end(); ++i)
        if (*i <= limit && (best == values.end() || *i > *best)) best = i;
    return best == values.end() ? -1 : static_cast<int>(best - values.begin());
}

double CMathHelper::GetTotal(std::span<const double> values) {
    return std::accumulate(values.begin(), values.end(), 0.0);
}

double CMathHelper::GetMin(std::span<const double> values) {
    if (values.empty()) return 0;
    double least = values[0];
    for (const double value : values)
        if (value < least || std::isnan(least)) least = value;
    return least;
}

double CMathHelper::GetStandardError(std::span<const double> values, double mean) {
    const auto n = static_cast<double>(values.size());
    if (n < 2) return 0;
    double squares = 0;
    for (const double value : values) squares += (value - mean) * (value - mean);
    return n * squares / ((n - 1) * n);
}

double CMathHelper::GetNpr(const double* in, const double* out, int n, double rate) {
    double total = 0;
    double factor = 1;
    for (int i = 0; i < n; ++i, factor *= 1 - rate) total += (in[i] - out[i]) * factor;
    return total;
}

double CMathHelper::GetIrr(const double* in, const double* out, int n) {
    constexpr int kMostSteps = 1000;
    constexpr double kCloseEnough = 0.01;
    double low = 0;
    double high = 1;
    for (int step = 0; step < kMostSteps && high - low >= kCloseEnough; ++step) {
        const double atHigh = GetNpr(in, out, n, high);
        if (GetNpr(in, out, n, low) == 0) return low;
        if (atHigh == 0) return high;
        if (atHigh < 0) {
            high = (low + high) / 2;
        } else {
            low = high;
            high *= 2;
        }
    }
    return (low + high) / 2;
}

double CMathHelper::RoundToDecimalPlaces(double value, int places) {
    const double factor = std::trunc(std::pow(10.0, places));
    const double scaled = value * factor;
    if (factor == 0 || !std::isfinite(scaled)) return value;
    return (std::trunc(scaled) + 0.0) / factor;  // + 0.0: integers have no negative zero
}

void CMathHelper::RemoveLessThan(CUIntArray& values, int minimum) {
    std::erase_if(values.AsStd(), [minimum](UINT value) { return static_cast<int>(value) < minimum; });
}

void CMathHelper::RemoveDuplicates(CUIntArray& values) {
    const std::vector<std::uint64_t> items(values.begin(), values.end());
    const auto first = qv::FirstOccurrences(items);
    std::vector<UINT> kept;
    for (std::size_t i = 0; i < first.size(); ++i)
        if (first[i] == i) kept.push_back(values.AsStd()[i]);
    values.AsStd() = std::move(kept);
}

void CMathHelper::Sort(CUIntArray& values, int descending) {
    const auto asSigned = [](UINT value) { return static_cast<int>(value); };
    if (descending)
        std::ranges::sort(values.AsStd(), std::greater(), asSigned);
    else
        std::ranges::sort(values.AsStd(), std::less(), asSigned);
}

int CMathHelper::GetIndex(std::span<const UINT> values, UINT value) {
    const auto found = std::find(values.begin(), values.end(), value);
    return found == values.end() ? -1 : static_cast<int>(found - values.begin());
}

int BitCount(unsigned long value) {
    return std::popcount(value);
}
