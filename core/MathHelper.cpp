#include "qvcommon/MathHelper.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <numeric>
#include <unordered_set>

void CMathHelper::CumulizeArray(CDoubleArray& values) {
    std::partial_sum(values.begin(), values.end(), values.begin());
}

int CMathHelper::GetIndexHighestAtOrUnder(const CDoubleArray& values, double limit) {
    int best = -1;
    for (int i = 0; i < values.GetSize(); ++i)
        if (values[i] <= limit && (best < 0 || values[i] > values[best])) best = i;
    return best;
}

double CMathHelper::GetTotal(const CDoubleArray& values) {
    return std::accumulate(values.begin(), values.end(), 0.0);
}

double CMathHelper::GetMin(const CDoubleArray& values) {
    if (values.IsEmpty()) return 0;
    double least = values[0];
    for (const double value : values)
        if (value < least || std::isnan(least)) least = value;
    return least;
}

double CMathHelper::GetStandardError(const CDoubleArray& values, double mean) {
    const double n = values.GetSize();
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
    return (std::trunc(scaled) + 0.0) / factor;  // + 0.0: an integer has no negative zero
}

void CMathHelper::RemoveLessThan(CUIntArray& values, int minimum) {
    std::erase_if(values.AsStd(), [minimum](UINT value) { return static_cast<int>(value) < minimum; });
}

void CMathHelper::RemoveDuplicates(CUIntArray& values) {
    std::unordered_set<UINT> seen;
    seen.reserve(values.AsStd().size());
    std::erase_if(values.AsStd(), [&seen](UINT value) { return !seen.insert(value).second; });
}

void CMathHelper::Sort(CUIntArray& values, int descending) {
    const auto asSigned = [](UINT value) { return static_cast<int>(value); };
    if (descending)
        std::ranges::sort(values.AsStd(), std::greater(), asSigned);
    else
        std::ranges::sort(values.AsStd(), std::less(), asSigned);
}

int CMathHelper::GetIndex(const CUIntArray& values, UINT value) {
    const auto found = std::find(values.begin(), values.end(), value);
    return found == values.end() ? -1 : static_cast<int>(found - values.begin());
}

int BitCount(unsigned long value) {
    return std::popcount(value);
}
