#include "qvcommon/framework/DateTime.h"

#include <gtest/gtest.h>

#include <ctime>
#include <limits>

#include "qvcommon/StringHelper.h"
#include "tests/support/ScopedLocale.h"
#include "tests/support/ScopedTimeZone.h"

using namespace std::string_view_literals;

namespace {

constexpr double kFirst = -657434, kLast = 2958465;
constexpr auto kPattern = "%Y-%m-%d %H:%M:%S";

std::string Written(const COleDateTime& date) {
    return date.Format(kPattern).AsStd();
}

TEST(DateTime, EveryDayMatchesCalendar) {
    int year = 100, month = 1, day = 1, yearDay = 1, weekday = 6;  // 1 January 100 was a Friday
    for (double number = kFirst; number <= kLast; ++number) {
        const COleDateTime date(number);
        ASSERT_EQ(std::tuple(date.GetYear(), date.GetMonth(), date.GetDay(), date.GetDayOfYear(), date.GetDayOfWeek()),
                  std::tuple(year, month, day, yearDay, weekday))
            << number;
        ASSERT_EQ(COleDateTime(year, month, day, 0, 0, 0).m_dt, number);
        const bool leap = year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
        const int length = month == 2 ? 28 + leap : month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
        weekday = weekday % 7 + 1;
        ++yearDay;
        if (++day <= length) continue;
        day = 1;
        if (++month <= 12) continue;
        month = yearDay = 1;
        ++year;
    }
    EXPECT_EQ(year, 10000);
}

TEST(DateTime, RoundtripsEverySecondOfDay) {
    const int days[][3] = {{100, 1, 1}, {1899, 12, 28}, {1899, 12, 29}, {1899, 12, 30}, {1899, 12, 31}, {9999, 12, 31}};
    for (const auto& [year, month, day] : days) {
        double before = -1e12;
        for (int s = 0; s < 86400; ++s) {
            const COleDateTime date(year, month, day, s / 3600, s / 60 % 60, s % 60);
            ASSERT_EQ(date.GetHour() * 3600 + date.GetMinute() * 60 + date.GetSecond(), s) << year << " " << s;
            ASSERT_EQ(date.GetDay(), day) << s;
            const double length = (date - COleDateTime(0.0)).GetTotalSeconds();
            ASSERT_GT(length, before + 0.9) << year << " " << s;
            before = length;
        }
    }
}

TEST(DateTime, ConvertsDayNumbers) {
    using Row = std::tuple<double, const char*>;
    for (const auto& [number, written] :
         {Row{0, "1899-12-30 00:00:00"}, Row{-1.25, "1899-12-29 06:00:00"}, Row{-0.25, "1899-12-30 06:00:00"},
          Row{1.75, "1899-12-31 18:00:00"}, Row{0.999999, "1899-12-31 00:00:00"}, Row{-1.999999, "1899-12-30 00:00:00"},
          Row{1 - 0.51 / 86400, "1899-12-30 23:59:59"}, Row{1 - 0.49 / 86400, "1899-12-31 00:00:00"},
          Row{kLast + 0.9999999, "9999-12-31 23:59:59"}, Row{kFirst - 0.5, "100-01-01 12:00:00"},
          Row{kLast + 1, "Invalid DateTime"}, Row{kFirst - 1, "Invalid DateTime"},
          Row{std::numeric_limits<double>::quiet_NaN(), "Invalid DateTime"},
          Row{std::numeric_limits<double>::infinity(), "Invalid DateTime"}})
        EXPECT_EQ(Written(COleDateTime(number)), written) << number;
}

TEST(DateTime, OutOfRangeFieldsSetInvalidStatus) {
    const int rows[][6] = {
        {99, 12, 31, 0, 0, 0},  {10000, 1, 1, 0, 0, 0}, {1900, 2, 29, 0, 0, 0},  {2004, 0, 1, 0, 0, 0},
        {2004, 13, 1, 0, 0, 0}, {2004, 1, 0, 0, 0, 0},  {2004, 4, 31, 0, 0, 0},  {2004, 1, 1, 24, 0, 0},
        {2004, 1, 1, 0, 60, 0}, {2004, 1, 1, 0, 0, 60}, {2004, 1, 1, -1, 0, 0},  {-2004, 1, 1, 0, 0, 0},
        {2004, 1, 1, 0, -1, 0}, {2004, 1, 1, 0, 0, -1}, {2004, 257, 1, 0, 0, 0}, {2004, 1, 257, 0, 0, 0}};
    for (const auto& [year, month, day, hour, minute, second] : rows) {
        COleDateTime date(7.0);
        EXPECT_EQ(date.SetDateTime(year, month, day, hour, minute, second), 1) << year << "-" << month << "-" << day;
        EXPECT_EQ(date.GetStatus(), COleDateTime::invalid);
        EXPECT_EQ(date.m_dt, 7);
        EXPECT_EQ(date.GetYear(), -1);
        EXPECT_EQ(date.GetDayOfWeek(), -1);
    }
    COleDateTime date;
    EXPECT_EQ(date.SetTime(6, 0, 0), 0);
    EXPECT_EQ(date.m_dt, 0.25);
    EXPECT_EQ(date.SetDate(1899, 12, 28), 0);
    EXPECT_EQ(date.m_dt, -2);
}

TEST(DateTime, ArithmeticAndComparisonAreLinear) {
    using Row = std::tuple<double, COleDateTimeSpan, double>;
    for (const auto& [start, span, end] :
         {Row{-1.25, 0.5, -1.75}, Row{-1.75, 0.5, 0.25}, Row{0.25, -0.5, -1.75}, Row{-0.25, 1, 1.25},
          Row{-2.5, {1, 12, 0, 0}, 0}, Row{1, {0, -24, -1440, 86400}, 0}, Row{0, -1e-20, 0}}) {
        const COleDateTime moved = COleDateTime(start) + span;
        EXPECT_EQ(moved.m_dt, end) << start;
        EXPECT_NEAR((moved - COleDateTime(start)).GetTotalDays(), span.m_span, 1e-9) << start;
    }
    EXPECT_EQ((COleDateTime(kLast) + 1.0).GetStatus(), COleDateTime::invalid);
    EXPECT_EQ((COleDateTime(kFirst) - COleDateTimeSpan(1e-6)).GetStatus(), COleDateTime::invalid);
    EXPECT_EQ(COleDateTimeSpan(4e6).GetStatus(), COleDateTimeSpan::invalid);
    const COleDateTimeSpan whole = COleDateTime(9999, 12, 31, 23, 59, 59) - COleDateTime(kFirst);
    EXPECT_EQ(whole.GetStatus(), COleDateTimeSpan::valid);

    COleDateTime null, invalid;
    null.SetStatus(COleDateTime::null);
    invalid.SetStatus(COleDateTime::invalid);
    EXPECT_EQ((null + 1.0).GetStatus(), COleDateTime::null);
    EXPECT_EQ((invalid + 1.0).GetStatus(), COleDateTime::invalid);
    EXPECT_EQ((invalid - null).GetStatus(), COleDateTimeSpan::null);
    EXPECT_EQ((invalid - COleDateTime()).GetStatus(), COleDateTimeSpan::invalid);
    EXPECT_EQ(null.Format("%Y"), "");
    EXPECT_LT(COleDateTime(-1.75), COleDateTime(-0.25));
    EXPECT_LT(COleDateTime(-1.25), COleDateTime(-1.75));
    EXPECT_EQ(COleDateTime(-0.25), COleDateTime(0.25));
    EXPECT_EQ(null, null);
    EXPECT_NE(null, invalid);
    EXPECT_FALSE(null < COleDateTime() || null > COleDateTime() || null == COleDateTime());
}

std::string WrittenByTheCLibrary(char conversion, const std::tm& fields) {
    const char format[] = {'%', conversion, 0};
    char text[128];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    return {text, std::strftime(text, sizeof text, format, &fields)};
#pragma GCC diagnostic pop
}

// Where the system's C library knows the conversion and the year.
TEST(DateTime, FormatMatchesStrftime) {
    std::tm epoch{};
    epoch.tm_year = 70;
    epoch.tm_mday = 1;
    const bool modern = WrittenByTheCLibrary('F', epoch) == "1970-01-01";
    const std::string known = modern ? "aAbBdHIjmMpSUwWyY%cxXDeFgGhnrRtTuV" : "aAbBdHIjmMpSUwWyY%cxX";
    for (double number = modern ? kFirst : 2; number <= kLast; number += 97.53) {
        const COleDateTime date(number);
        std::tm fields{};
        fields.tm_year = date.GetYear() - 1900;
        fields.tm_mon = date.GetMonth() - 1;
        fields.tm_mday = date.GetDay();
        fields.tm_hour = date.GetHour();
        fields.tm_min = date.GetMinute();
        fields.tm_sec = date.GetSecond();
        fields.tm_wday = date.GetDayOfWeek() - 1;
        fields.tm_yday = date.GetDayOfYear() - 1;
        fields.tm_isdst = -1;
        for (const char conversion : known) {
            const char format[] = {'%', conversion, 0};
            ASSERT_EQ(date.Format(format).AsStd(), WrittenByTheCLibrary(conversion, fields))
                << conversion << " of " << Written(date);
        }
    }
}

TEST(DateTime, FormatsEveryConversionOnEverySystem) {
    const COleDateTime date(2004, 5, 5, 14, 3, 7), early(987, 1, 1, 0, 0, 0);
    using Row = std::tuple<const char*, const char*, const char*>;
    for (const auto& [pattern, of2004, of987] :
         {Row{"%d %b %Y %H:%M:%S", "05 May 2004 14:03:07", "01 Jan 987 00:00:00"},
          Row{"%B %d %Y, %H:%M:%S", "May 05 2004, 14:03:07", "January 01 987, 00:00:00"},
          Row{"%a %A %e|%I %p|%C %y|%j", "Wed Wednesday  5|02 PM|20 04|126", "Mon Monday  1|12 AM|09 87|001"},
          Row{"%G-W%V-%u %g %U %W %w", "2004-W19-3 04 18 18 3", "987-W01-1 87 00 01 1"},
          Row{"%D %F %R %T %r", "05/05/04 2004-05-05 14:03 14:03:07 02:03:07 PM",
              "01/01/87 987-01-01 00:00 00:00:00 12:00:00 AM"},
          Row{"%h%n%t%%%Ey%Od%z%Z", "May\n\t%0405", "Jan\n\t%8701"}, Row{"%Q %E %", "%Q %E %", "%Q %E %"},
          Row{"%EQ%", "%EQ%", "%EQ%"}, Row{"", "", ""}}) {
        EXPECT_EQ(date.Format(pattern), of2004);
        EXPECT_EQ(early.Format(pattern), of987);
    }
    for (const char* const format : {"%c", "%x", "%X"}) {
        const ScopedLocale german(GermanLocale());
        const CString text = early.Format(format);
        EXPECT_EQ(text, CStringHelper::TrimString(text)) << format;  // no blank for a zone that is not written
        EXPECT_FALSE(text.IsEmpty()) << format;
    }
    EXPECT_EQ(date.Format("\0%H\0"sv), "\00014\0"sv);
}

TEST(DateTime, ConvertsSystemTimes) {
    const COleDateTime before = COleDateTime::GetCurrentTime();
    const std::time_t now = std::time(nullptr);
    const double lag = (COleDateTime(now) - before).GetTotalSeconds();
    EXPECT_TRUE(lag > -0.5 && lag < 60) << lag;
    EXPECT_EQ(COleDateTime(QvFileTime::FromSteps((static_cast<std::uint64_t>(now) + 11644473600) * 10000000 + 9999999)),
              COleDateTime(now));
    EXPECT_EQ(COleDateTime(QvFileTime(0xFFFFFFFF, 0xFFFFFFFF)).GetStatus(), COleDateTime::invalid);
    EXPECT_EQ(COleDateTime(std::numeric_limits<std::int64_t>::max()).GetStatus(), COleDateTime::invalid);
    const ScopedTimeZone zone("Asia/Kolkata");
    if (!zone) GTEST_SKIP() << kNoTimeZone;
    EXPECT_EQ(Written(COleDateTime(std::time_t{0})), "1970-01-01 05:30:00");
}

}  // namespace
