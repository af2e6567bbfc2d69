#pragma once

/// @file Small numeric routines over arrays. Nothing here raises an error, and elements that are not numbers (NaN) break
/// nothing: where a contract does not name them they count in sums, and so make the result NaN. One call looks at each
/// element once, Sort and GetIrr excepted. Arrays that are only read are spans, so vectors and plain arrays will do.

#include <span>

#include "qvcommon/framework/Collections.h"

/// Small numeric routines. All members are free of state and raise nothing.
class QVCOMMON_API CMathHelper {
public:
    /// Replaces each element by the sum of itself and all before it.
    static void CumulizeArray(CDoubleArray& values);
    /// The index of the largest element that is at most `limit`, among equal ones the first; -1 when there is none. NaN
    /// elements are passed over.
    static int GetIndexHighestAtOrUnder(std::span<const double> values, double limit);
    static int GetIndexHighestAtOrUnder(const CDoubleArray& values, double limit) {
        return GetIndexHighestAtOrUnder(std::span(values.AsStd()), limit);
    }
    /// The sum, added from the first element on; 0 without elements.
    static double GetTotal(std::span<const double> values);
    static double GetTotal(const CDoubleArray& values) { return GetTotal(std::span(values.AsStd())); }
    /// The smallest element. NaN elements are passed over unless there are no others; 0 without elements.
    static double GetMin(std::span<const double> values);
    static double GetMin(const CDoubleArray& values) { return GetMin(std::span(values.AsStd())); }
    /// n * sum((x - mean)^2) / ((n - 1) * n), the sample variance around the given mean: no square root is taken. 0 for
    /// fewer than two elements.
    static double GetStandardError(std::span<const double> values, double mean);
    static double GetStandardError(const CDoubleArray& values, double mean) {
        return GetStandardError(std::span(values.AsStd()), mean);
    }

    /// The sum over the `n` periods i of (in[i] - out[i]) * (1 - rate)^i: each period's net amount, discounted by the
    /// factor 1 - rate a period. 0 when n is 0 or less.
    static double GetNpr(const double* in, const double* out, int n, double rate);
    /// The rate at which GetNpr is 0, to within 0.015, searched upwards from 0 by doubling and halving. When there is
    /// none the search ends all the same, after at most 1000 steps of two GetNpr each, with a rate that means nothing.
    static double GetIrr(const double* in, const double* out, int n);

    /// The value cut, not rounded, after `places` decimals: (2.999, 2) gives 2.99, (-1.555, 1) gives -1.5. What the double
    /// cannot hold decides: (0.29, 2) gives 0.28. With a negative number of places, or where the value is not finite or too
    /// large to have decimals to cut, the value comes back as it is.
    static double RoundToDecimalPlaces(double value, int places);

    /// Keeps, in order, the elements not below the minimum. Elements are compared as signed values: 0xFFFFFFFF is -1.
    static void RemoveLessThan(CUIntArray& values, int minimum);
    /// Keeps the first occurrence of each value, in order. Takes time in line with their number, whatever they are.
    static void RemoveDuplicates(CUIntArray& values);
    /// Ascending, or descending when that is non-zero; as signed values, like RemoveLessThan.
    static void Sort(CUIntArray& values, int descending = 0);
    /// The first index of the value, or -1.
    static int GetIndex(std::span<const UINT> values, UINT value);
    static int GetIndex(const CUIntArray& values, UINT value) { return GetIndex(std::span(values.AsStd()), value); }
};

/// The number of bits that are set.
QVCOMMON_API int QVCOMMON_CALL BitCount(unsigned long value);
