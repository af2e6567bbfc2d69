#include "qvcommon/MathHelper.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kHuge = std::numeric_limits<double>::max();

TEST(MathHelper, TotalsAndStandardError) {
    CDoubleArray values{1, 2, 3};
    EXPECT_EQ(CMathHelper::GetTotal(values), 6);
    EXPECT_EQ(CMathHelper::GetStandardError(values, 2), 1);
    EXPECT_EQ(CMathHelper::GetStandardError(values, 0), 7);
    CMathHelper::CumulizeArray(values);
    EXPECT_EQ(values, (CDoubleArray{1, 3, 6}));

    CDoubleArray none;
    CMathHelper::CumulizeArray(none);
    EXPECT_EQ(CMathHelper::GetTotal(none), 0);
    EXPECT_EQ(CMathHelper::GetStandardError(CDoubleArray{5}, 0), 0);
}

TEST(MathHelper, HighestAtOrUnderLimitAndMin) {
    using Row = std::tuple<CDoubleArray, double, int>;
    for (const auto& [values, limit, index] :
         {Row{{10, 100}, 50, 0}, Row{{10, 100}, 5, -1}, Row{{10, 100}, 100, 1}, Row{{}, 1, -1},
          Row{{3, 7, 2, 7, 9}, 8, 1}, Row{{kNaN, -4, kNaN}, 0, 1}, Row{{1}, kNaN, -1}, Row{{-kInfinity}, -kHuge, 0}})
        EXPECT_EQ(CMathHelper::GetIndexHighestAtOrUnder(values, limit), index) << limit;

    EXPECT_EQ(CMathHelper::GetMin({3, -2, 8}), -2);
    EXPECT_EQ(CMathHelper::GetMin({kNaN, 4, kNaN, 3}), 3);
    EXPECT_EQ(CMathHelper::GetMin(std::vector<double>()), 0);
    EXPECT_TRUE(std::isnan(CMathHelper::GetMin({kNaN})));
}

TEST(MathHelper, NetPresentValueAndIrr) {
    const double in[] = {0, 60, 60}, out[] = {100, 0, 0};
    EXPECT_DOUBLE_EQ(CMathHelper::GetNpr(in, out, 3, 0.5), -100 + 30 + 15);
    EXPECT_DOUBLE_EQ(CMathHelper::GetNpr(in, out, 3, 0), 20);
    EXPECT_EQ(CMathHelper::GetNpr(in, out, 0, 0.5), 0);
    EXPECT_EQ(CMathHelper::GetIrr(in, out, 0), 0);

    // -100 + 60 d + 60 d^2 is 0 at the factor d = 0.8844, a rate of 0.1156. The search closes in on it from below.
    EXPECT_EQ(CMathHelper::GetIrr(in, out, 3), 0.1087646484375);

    const double even[] = {100, 0}, odd[] = {100, 0}, none[] = {0, 0};
    EXPECT_EQ(CMathHelper::GetIrr(even, odd, 2), 0);
    EXPECT_EQ(CMathHelper::GetIrr(none, in, 2), 1) << "only period 0 counts at rate 1, and that is even";
    // Gain at every rate: doubling never ends by itself.
    EXPECT_GT(CMathHelper::GetIrr(even, none, 2), 1e300);
    const double broken[] = {kNaN, kNaN};
    EXPECT_GT(CMathHelper::GetIrr(broken, none, 2), 1e300);
}

TEST(MathHelper, TruncatesToDecimalPlaces) {
    using Row = std::tuple<double, int, double>;
    for (const auto& [value, places, result] :
         {Row{2.999, 2, 2.99}, Row{-1.555, 1, -1.5}, Row{0.29, 2, 0.28}, Row{7.9, 0, 7}, Row{8.2, 1, 8.2},
          Row{1234.5, -2, 1234.5}, Row{1e18 + 256, 3, 1e18 + 256}, Row{kHuge, 5, kHuge}, Row{1.5, 400, 1.5},
          Row{-kInfinity, 2, -kInfinity}, Row{0.1, std::numeric_limits<int>::max(), 0.1},
          Row{0.1, std::numeric_limits<int>::min(), 0.1}})
        EXPECT_EQ(CMathHelper::RoundToDecimalPlaces(value, places), result) << value;
    EXPECT_TRUE(std::isnan(CMathHelper::RoundToDecimalPlaces(kNaN, 2)));
    EXPECT_FALSE(std::signbit(CMathHelper::RoundToDecimalPlaces(-0.004, 2)));
}

TEST(MathHelper, UnsignedArraysCompareAsSigned) {
    const CUIntArray start{3, 0xFFFFFFFF, 1, 3, 0x80000000, 1, 0};
    CUIntArray values = start;
    CMathHelper::RemoveLessThan(values, 0);
    EXPECT_EQ(values, (CUIntArray{3, 1, 3, 1, 0}));
    values = start;
    CMathHelper::RemoveLessThan(values, -1);
    EXPECT_EQ(values, (CUIntArray{3, 0xFFFFFFFF, 1, 3, 1, 0}));
    values = start;
    CMathHelper::RemoveDuplicates(values);
    EXPECT_EQ(values, (CUIntArray{3, 0xFFFFFFFF, 1, 0x80000000, 0}));
    CMathHelper::Sort(values, 0);
    EXPECT_EQ(values, (CUIntArray{0x80000000, 0xFFFFFFFF, 0, 1, 3}));
    CMathHelper::Sort(values, 1);
    EXPECT_EQ(values, (CUIntArray{3, 1, 0, 0xFFFFFFFF, 0x80000000}));
    EXPECT_EQ(CMathHelper::GetIndex(start, 3), 0);
    EXPECT_EQ(CMathHelper::GetIndex(start, 1), 2);
    EXPECT_EQ(CMathHelper::GetIndex(start, 4), -1);
}

TEST(MathHelper, CountsSetBits) {
    EXPECT_EQ(BitCount(0), 0);
    EXPECT_EQ(BitCount(0xFFFFFFFF), 32);
    EXPECT_EQ(BitCount(0x80000001), 2);
    EXPECT_EQ(BitCount(~0ul), static_cast<int>(8 * sizeof(long)));
}

}  // namespace
