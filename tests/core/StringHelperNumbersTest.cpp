#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "qvcommon/StringHelper.h"
#include "tests/support/Raised.h"
#include "tests/support/ScopedLocale.h"

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity(), kNan = std::numeric_limits<double>::quiet_NaN();

TEST(StringNumbers, Reals) {
    EXPECT_EQ(CStringHelper::ToString(0.1), "0.1");
    EXPECT_EQ(CStringHelper::ToString(-1234567.0), "-1.23457e+06");
    EXPECT_EQ(CStringHelper::ToString(1e100), "1e+100");
    const ScopedLocale german(GermanLocale());
    if (!german) GTEST_SKIP() << "no German locale";
    EXPECT_EQ(CStringHelper::ToString(0.5), "0,5");
}

TEST(StringNumbers, Lists) {
    EXPECT_EQ(CStringHelper::ToString(CUIntArray{}), "");
    EXPECT_EQ(CStringHelper::ToString(CUIntArray{0, 0xFFFFFFFF, 0x80000000}), "0,-1,-2147483648");
    CUIntArray values{9};
    CStringHelper::FromString(",1,, \t-1x,+2,x,4294967295,-,4294967297, ", values);
    EXPECT_EQ(values, (CUIntArray{9, 1, 0xFFFFFFFF, 2, 0, 0xFFFFFFFF, 0, 1, 0}));
}

TEST(StringNumbers, Based) {
    using Row = std::tuple<double, int, const char*>;
    for (const auto& [value, base, text] :
         {Row{2.5, 60, "2:30"}, Row{2.05, 60, "2:02"}, Row{0.999, 100, "0:99"}, Row{7, 60, "7:00"},
          Row{-2.5, 60, "-2:-30"}, Row{0.5, 1000, "0:500"}, Row{-0.25, 0, "0:00"}, Row{1e15, 60, "1000000000000000:00"},
          Row{kInf, 60, "inf:00"}, Row{kNan, 60, "nan:00"}})
        EXPECT_EQ(CStringHelper::ToBasedString(value, base, ":"), text);
}

const CDoubleArray kSizes{1024, 1024.0 * 1024};
const CStringArray kSizeNames{"KB", "MB"};

TEST(StringNumbers, Rebase) {
    using Row = std::tuple<double, int, int, const char*>;
    for (const auto& [value, decimals, unit, text] :
         {Row{1536, 1, -2, "1.5 KB"}, Row{1023, 0, -2, "1023 bytes"}, Row{1536, 2, -1, "1536.00 bytes"},
          Row{524288, 1, 1, "0.5 MB"}, Row{3.0 * 1024 * 1024, 0, -2, "3 MB"}, Row{1024, -3, -2, "1.000000 KB"},
          Row{kNan, 0, -2, "nan bytes"}})
        EXPECT_EQ(CStringHelper::RebaseUnits(value, "bytes", kSizes, kSizeNames, decimals, unit), text);
    EXPECT_EQ(CStringHelper::RebaseUnits(5, "%% of %s%", {}, {}, 0, -1), "5 % of %s%");
    for (int index : {2, -3})
        EXPECT_TRUE(Raised<CInvalidArgException>(
            [&] { CStringHelper::RebaseUnits(1, "bytes", kSizes, kSizeNames, 0, index); }));
}

TEST(StringNumbers, RebaseRoundingUp) {
    EXPECT_EQ(CStringHelper::RebaseUnitsRoundUp(2048, "byte", kSizes, kSizeNames), "3 KBs");
    EXPECT_EQ(CStringHelper::RebaseUnitsRoundUp(0.6, "byte", kSizes, kSizeNames), "2 bytes");
    EXPECT_EQ(CStringHelper::RebaseUnitsRoundUp(5, "%d", {}, {}), "6 %ds");
}

TEST(StringNumbers, Multibase) {
    using Row = std::tuple<double, const char*>;
    for (const auto& [value, text] :
         {Row{3725, "1 hour, 2 minutes, 5 seconds"}, Row{7200, "2 hours"}, Row{61, "1 minute, 1 second"},
          Row{0, "0 second"}, Row{0.5, "0 second"}, Row{60.5, "1 minute, 0 second"}, Row{-5, "-5 second"},
          Row{1e13, "2777777777 hours, 46 minutes, 40 seconds"}, Row{kInf, "inf seconds"}, Row{kNan, "nan second"}})
        EXPECT_EQ(CStringHelper::ToMultibase(value, "second", {60, 3600}, {"minute", "hour"}, 1), text);
    EXPECT_EQ(CStringHelper::ToMultibase(125, "s", {60}, {"min"}, 0), "2 min, 5 s");
}

TEST(StringNumbers, MultibaseEndsForAnyThresholds) {
    const CStringArray names{"x", "y", "z"};
    EXPECT_EQ(CStringHelper::ToMultibase(5, "u", {0, -1, kNan}, names, 0), "5 u");
    EXPECT_EQ(CStringHelper::ToMultibase(5, "u", {kInf, -kInf, 2}, names, 0), "2 z, 1 u");
    const double tiny = std::numeric_limits<double>::denorm_min();
    for (double value : {1e308, 1.0, 0.3, 1e17, tiny})
        for (double low : {tiny, 0.1, 3.0})
            EXPECT_LT(CStringHelper::ToMultibase(value, "u", {low, 7, 1e-300}, names, 1).GetLength(), 1000);
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { CStringHelper::ToMultibase(5, "u", {1}, {}, 0); }));
}

}  // namespace
