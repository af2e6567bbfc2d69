#pragma once

/// @file Small numeric routines on arrays. They raise no errors and accept NaN: unless stated otherwise NaN elements
/// take part in sums and thus make the result NaN. All are O(n) except Sort and GetIrr. Read-only arrays are spans, so
/// vectors and plain arrays are accepted.

#include <span>

#include "qvcommon/framework/Collections.h"

/// Small numeric routines. All members are stateless and raise nothing.
class QVCOMMON_API CMathHelper {
public:
    /// Replaces each element by its prefix sum, inclusive.
    static void CumulizeArray(CDoubleArray& values);
    /// Returns the index of the largest element that is at most `limit`, the first among equal ones; -1 if not found.
    /// NaN elements are ignored.
    static int GetIndexHighestAtOrUnder(std::span<const double> values, double limit);
    static int GetIndexHighestAtOrUnder(const CDoubleArray& values, double limit) {
        return GetIndexHighestAtOrUnder(std::span(values.AsStd()), limit);
    }
    /// Returns the sum, added in order; 0 without elements.
    static double GetTotal(std::span<const double> values);
    static double GetTotal(const CDoubleArray& values) { return GetTotal(std::span(values.AsStd())); }
    /// Returns the smallest element. NaN elements are ignored unless there are no others; 0 without elements.
    static double GetMin(std::span<const double> values);
    static double GetMin(const CDoubleArray& values) { return GetMin(std::span(values.AsStd())); }
    /// Returns n * sum((x - mean)^2) / ((n - 1) * n), the sample variance around the given mean, without a square root.
    /// 0 for fewer than two elements.
    static double GetStandardError(std::span<const double> values, double mean);
    static double GetStandardError(const CDoubleArray& values, double mean) {
        return GetStandardError(std::span(values.AsStd()), mean);
    }

    /// Returns the sum over the `n` periods i of (in[i] - out[i]) * (1 - rate)^i: each period's net amount, discounted
    /// by the factor 1 - rate per period. 0 if n is 0 or less.
    static double GetNpr(const double* in, const double* out, int n, double rate);
    /// Returns the rate at which GetNpr is 0, to within 0.015, searched upwards from 0 by doubling and halving. It is
    /// found if GetNpr is negative below it and positive above; otherwise, as for a loan, or if there is no such rate,
    /// returns an unspecified rate after at most 1000 steps of two GetNpr each.
    static double GetIrr(const double* in, const double* out, int n);

    /// Truncates the value, without rounding, after `places` decimals: (2.999, 2) gives 2.99, (-1.555, 1) gives -1.5.
    /// This applies to the double's actual value: (0.29, 2) gives 0.28. Values of more than 15 significant digits may
    /// change in the last one. Returns the value unchanged if `places` is negative, or if the value times 10 to the
    /// power `places` is not finite.
    static double RoundToDecimalPlaces(double value, int places);

    /// Removes elements below the minimum, keeping the order. Elements are compared as signed values: 0xFFFFFFFF is -1.
    static void RemoveLessThan(CUIntArray& values, int minimum);
    /// Keeps the first occurrence of each value, in order. O(n) regardless of the values.
    static void RemoveDuplicates(CUIntArray& values);
    /// Sorts in ascending order, or descending if that is non-zero; as signed values, like RemoveLessThan.
    static void Sort(CUIntArray& values, int descending = 0);
    /// Returns the first index of the value, or -1.
    static int GetIndex(std::span<const UINT> values, UINT value);
    static int GetIndex(const CUIntArray& values, UINT value) { return GetIndex(std::span(values.AsStd()), value); }
};

/// Returns the number of set bits.
QVCOMMON_API int QVCOMMON_CALL BitCount(unsigned long value);
