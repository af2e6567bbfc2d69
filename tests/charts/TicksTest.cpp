#include <gtest/gtest.h>

#include "charts/DateTicks.h"
#include "charts/Ticks.h"
#include "qvcommon/framework/DateTime.h"

namespace {

using namespace qv::charts;

std::string Joined(const std::vector<Tick>& ticks) {
    std::string all;
    for (const Tick& tick : ticks) {
        all += all.empty() ? "" : " ";
        for (const char32_t c : tick.text) all += c == U'\u2212' ? '-' : static_cast<char>(c);
        if (!tick.context.empty()) all += '/' + std::string(tick.context.begin(), tick.context.end());
    }
    return all;
}

TEST(Ticks, AreRoundNumbers) {
    using Row = std::tuple<double, double, int, bool, const char*>;
    constexpr double kMost = std::numeric_limits<double>::max();
    for (const auto& [low, high, most, logarithmic, ticks] : {
             Row{0, 97, 5, false, "0 20 40 60 80 100"},
             Row{-33, 142, 4, false, "-50 0 50 100 150"},
             Row{0, 0.0043, 5, false, "0 0.001 0.002 0.003 0.004 0.005"},
             Row{0, 12345, 3, false, "0 5,000 10,000 15,000"},
             Row{0, 2.3e9, 5, false, "0 0.5bn 1.0bn 1.5bn 2.0bn 2.5bn"},
             Row{1e18, 2e18, 2, false, "1.0e18 1.5e18 2.0e18"},
             Row{-kMost, kMost, 4, false, "-1e308 0 1e308"},
             Row{-kMost, kMost, 1, false, "-1e308 0 1e308"},
             Row{-6, 9, 1, false, "0"},  // no single step reaches over zero
             Row{5, 5, 3, false, "2 4 6 8"},
             Row{0, 5e-324, 2, false, "-1 0 1"},
             Row{1, 0, 2, false, "0 0.5 1.0"},  // no value at all
             Row{3, 4000, 10, true, "2 5 10 20 50 100 200 500 1,000 2,000 5,000"},
             Row{1, 1e12, 4, true, "1 1,000 1M 1bn 1tn"},
             Row{120, 180, 4, true, "120 140 160 180"},
             Row{1e-300, 1e300, 3, true, "1e-151 1 1e151"},
         }) {
        Range range{low, high};
        Widen(range, logarithmic);
        RoundOut(range, most, logarithmic);
        EXPECT_EQ(Joined(NumberTicks(range, most, logarithmic)), ticks) << low << ' ' << high;
    }
}

TEST(Ticks, DateTicksAreRoundLocalTimes) {
    using Row = std::tuple<COleDateTime, COleDateTime, const char*>;
    for (const auto& [first, last, ticks] : {
             Row{{2026, 5, 17, 9, 50, 0}, {2026, 5, 17, 10, 31, 0}, "10:00/17 May 2026 10:15 10:30"},
             Row{{2026, 5, 17, 20, 0, 0}, {2026, 5, 18, 14, 0, 0}, "00:00/18 May 2026 06:00 12:00"},
             Row{{2026, 5, 1, 0, 0, 0}, {2026, 6, 3, 0, 0, 0}, "04/May 2026 18 01/Jun 2026"},
             Row{{2025, 11, 20, 0, 0, 0}, {2026, 3, 2, 0, 0, 0}, "Dec/2025 Jan/2026 Feb Mar"},
             Row{{1890, 1, 1, 0, 0, 0}, {1910, 1, 1, 0, 0, 0}, "1890 1895 1900 1905 1910"},
             Row{{100, 1, 1, 0, 0, 0}, {9999, 12, 31, 0, 0, 0}, "5000"},
         })
        EXPECT_EQ(Joined(DateTicks({EvenDays(first.m_dt), EvenDays(last.m_dt)}, 4)), ticks);
}

}  // namespace
