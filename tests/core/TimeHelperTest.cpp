#include "qvcommon/TimeHelper.h"

#include <gtest/gtest.h>

#include <tuple>

#include "tests/support/ScopedTimeZone.h"

namespace {

COleDateTime DateOf(const char* text) {
    COleDateTime date;
    EXPECT_TRUE(date.ParseDateTime(text)) << text;
    return date;
}

std::string Written(const COleDateTime& date) {
    return date.Format("%Y-%m-%d %H:%M:%S").AsStd();
}

TEST(TimeHelper, WeeksStartOnTheFirstOfJanuary) {
    using Row = std::tuple<const char*, int, int>;
    for (const auto& [date, inWeek, inYear] :
         {Row{"2004-01-01", 1, 2004}, Row{"2004-01-07", 1, 2004}, Row{"2004-01-08", 2, 2004},
          Row{"2004-12-31", 53, 2004}, Row{"2005-12-30", 52, 2005}, Row{"2005-12-31", 53, 2005}}) {
        int week = 0, year = 0;
        CTimeHelper::GetWeekAndYear(DateOf(date), week, year);
        EXPECT_EQ(std::tuple(week, year), std::tuple(inWeek, inYear)) << date;
        EXPECT_EQ(CTimeHelper::GetWeek(DateOf(date)), inWeek);
    }
}

TEST(TimeHelper, DaysOfMonths) {
    using Row = std::tuple<int, int, int>;
    for (const auto& [year, month, days] :
         {Row{1900, 2, 28}, Row{2000, 2, 29}, Row{2004, 2, 29}, Row{2003, 2, 28}, Row{2004, 1, 31}, Row{2004, 11, 30},
          Row{2004, 12, 31}, Row{2004, 13, 0}, Row{2004, 0, 0}, Row{2004, -1, 0}}) {
        EXPECT_EQ(CTimeHelper::GetLastDayOfMonth(year, month), days) << year << "-" << month;
        EXPECT_EQ(CTimeHelper::GetDaysInMonth(month, year), days) << year << "-" << month;
    }
}

TEST(TimeHelper, StartAndEndOfTheDay) {
    for (const char* const text : {"2004-05-05 14:03:07", "1899-12-29 06:00:00"}) {
        COleDateTime date = DateOf(text);
        const std::string day = Written(date).substr(0, 10);
        CTimeHelper::ToEndOfDay(date);
        EXPECT_EQ(Written(date), day + " 23:59:59");
        CTimeHelper::ToStartOfDay(date);
        EXPECT_EQ(Written(date), day + " 00:00:00");
    }
}

TEST(TimeHelper, RoundsToMinutesButNotPastMidnight) {
    using Row = std::tuple<const char*, const char*>;
    for (const auto& [clock, rounded] :
         {Row{"10:59:30", "11:00:00"}, Row{"10:59:29", "10:59:00"}, Row{"10:30:30", "10:31:00"},
          Row{"23:59:45", "23:59:59"}, Row{"23:58:45", "23:59:00"}, Row{"00:00:00", "00:00:00"}}) {
        COleDateTime date = DateOf((std::string("2004-05-05 ") + clock).c_str()), time = date;
        CTimeHelper::RoundMinutes(date, 1);
        CTimeHelper::RoundMinutes(time, 0);
        EXPECT_EQ(Written(date), std::string("2004-05-05 ") + rounded);
        EXPECT_EQ(Written(time), std::string("1899-12-30 ") + rounded);
    }
    COleDateTime invalid(1e9);
    CTimeHelper::RoundMinutes(invalid, 0);
    EXPECT_EQ(invalid.GetStatus(), COleDateTime::invalid);
}

TEST(TimeHelper, ClampsIntoAWeek) {
    using Row = std::tuple<const char*, int, int, const char*>;
    for (const auto& [start, year, week, result] :
         {Row{"2004-01-07 23:59:59", 2004, 2, "2004-01-08 00:00:00"}, Row{"2003-12-31", 2004, 1, "2004-01-01 00:00:00"},
          Row{"2004-01-09 10:00:00", 2004, 2, "2004-01-09 10:00:00"}, Row{"2004-01-15", 2004, 2, "2004-01-14 23:59:59"},
          Row{"2005-01-01", 2004, 53, "2004-12-31 23:59:59"}, Row{"2006-01-01", 2005, 53, "2005-12-31 23:59:59"},
          Row{"2006-01-01", 2005, 52, "2005-12-30 23:59:59"}, Row{"1900-06-01", 1899, 52, "1899-12-30 23:59:59"},
          Row{"1898-06-01", 1899, 53, "1899-12-31 00:00:00"}, Row{"1900-06-01", 1899, 51, "1899-12-23 23:59:59"},
          Row{"9998-01-01", 9999, 53, "9999-12-31 00:00:00"}, Row{"2004-01-01", 10000, 1, "Invalid DateTime"}}) {
        COleDateTime date = DateOf(start);
        CTimeHelper::AdjustWithinRange(date, year, week);
        EXPECT_EQ(Written(date), result) << start << " into " << year << " week " << week;
    }
}

TEST(TimeHelper, FormatsStandardAndLongDates) {
    EXPECT_EQ(CTimeHelper::ToStdDateTime(DateOf("2004-05-05 14:03:07")), "05 May 2004 14:03:07");
    EXPECT_EQ(CTimeHelper::GetLongDateString(DateOf("2004-05-05 14:03:07")), "May 05 2004, 14:03:07");
}

TEST(TimeHelper, AverageWorkHours) {
    EXPECT_NEAR(CTimeHelper::GetAvWorkHoursPerWeek(40, 25, 10.25), 40 * 330 / 365.25, 1e-12);
    EXPECT_NEAR(CTimeHelper::GetAvWorkHoursPerDay(40, 25, 10.25), 40 * 330 / 365.25 / 7, 1e-12);
    EXPECT_NEAR(CTimeHelper::GetAvWorkHoursPerWorkDay(40, 5, 25, 10.25), 8 * 330 / 365.25, 1e-12);
}

TEST(TimeHelper, AppliesTimeZoneRulesOfDate) {
    struct Row {
        const char *zone, *local, *utc;
        const char* again = local;  // the local time of `utc`
    };
    const Row rows[] = {
        {"UTC", "2004-07-01 12:00:00", "2004-07-01 12:00:00"},
        {"Asia/Kolkata", "2004-01-01 00:00:00", "2003-12-31 18:30:00"},
        {"Europe/Berlin", "2004-07-01 12:00:00", "2004-07-01 10:00:00"},
        {"Europe/Berlin", "2004-03-28 01:59:59", "2004-03-28 00:59:59"},
        {"Europe/Berlin", "2004-03-28 02:30:00", "2004-03-28 01:30:00", "2004-03-28 03:30:00"},
        {"Europe/Berlin", "2004-03-28 03:00:00", "2004-03-28 01:00:00"},
        {"Europe/Berlin", "2004-10-31 02:30:00", "2004-10-31 00:30:00"},
        {"Europe/Berlin", "2004-10-31 03:00:00", "2004-10-31 02:00:00"},
        {"Europe/Berlin", "1850-01-01 12:00:00", "1850-01-01 11:06:32"},
        {"America/New_York", "2024-03-10 02:30:00", "2024-03-10 07:30:00", "2024-03-10 03:30:00"},
        {"America/New_York", "2006-04-01 12:00:00", "2006-04-01 17:00:00"},  // the rules of 2006, not today's
        {"America/New_York", "2007-04-01 12:00:00", "2007-04-01 16:00:00"},
        {"Australia/Lord_Howe", "2024-04-07 01:45:00", "2024-04-06 14:45:00"},
        {"Australia/Lord_Howe", "2024-10-06 02:15:00", "2024-10-05 15:45:00", "2024-10-06 02:45:00"},
    };
    int tried = 0;
    for (const Row& row : rows) {
        const ScopedTimeZone zone(row.zone);
        const bool isKnown = !qv::platform::HasDriveLetters() || DateOf(row.local).GetYear() > 1970;
        if (!zone || !isKnown) continue;
        ++tried;
        COleDateTime date = DateOf(row.local);
        const long seconds = CTimeHelper::GetTimeT(date);
        CTimeHelper::ConvertToUtc(date);
        EXPECT_EQ(Written(date), row.utc) << row.zone << " " << row.local;
        EXPECT_NEAR((date - COleDateTime(1970, 1, 1, 0, 0, 0)).GetTotalSeconds(), static_cast<double>(seconds), 0.01);
        CTimeHelper::ConvertToLocal(date);
        EXPECT_EQ(Written(date), row.again) << row.zone;
    }
    const ScopedTimeZone zone("Europe/Berlin");
    if (!zone || tried == 0) GTEST_SKIP() << kNoTimeZone;
    COleDateTime second = DateOf("2004-10-31 01:30:00");
    CTimeHelper::ConvertToLocal(second);
    EXPECT_EQ(Written(second), "2004-10-31 02:30:00") << "the second time, an hour after the first";
}

TEST(TimeHelper, PreservesUnconvertibleDates) {
    COleDateTime invalid(1e9), first(100, 1, 1, 0, 0, 0), last(9999, 12, 31, 23, 59, 59);
    EXPECT_EQ(CTimeHelper::GetTimeT(invalid), -1);
    for (COleDateTime* const date : {&invalid, &first, &last}) {
        const COleDateTime before = *date;
        CTimeHelper::ConvertToLocal(*date);
        CTimeHelper::ConvertToUtc(*date);
        EXPECT_EQ(date->GetStatus(), before.GetStatus());
        EXPECT_TRUE(date == &invalid || (*date - before).GetTotalDays() < 1);
    }
    const ScopedTimeZone zone("Asia/Kolkata");
    if (!zone) GTEST_SKIP() << kNoTimeZone;
    CTimeHelper::ConvertToUtc(first = COleDateTime(100, 1, 1, 0, 0, 0));
    EXPECT_EQ(Written(first), "100-01-01 00:00:00");
    CTimeHelper::ConvertToLocal(last = COleDateTime(9999, 12, 31, 23, 59, 59));
    EXPECT_EQ(Written(last), "9999-12-31 23:59:59");
}

TEST(TimeHelper, FileTimesUseStandardTime) {
    EXPECT_EQ(CTimeHelper::FileTimeToUnixTime({0xFFFFFFFF, 0xFFFFFFFF}), 0);
    constexpr std::uint64_t kEpoch = 116444736000000000;
    const std::uint64_t winter = kEpoch + 1072958400ull * 10000000,
                        summer = kEpoch + 1088683200ull * 10000000 + 9999999;
    using Row = std::tuple<const char*, long>;
    int tried = 0;
    for (const auto& [name, offset] : {Row{"UTC", 0}, Row{"Europe/Berlin", -3600}, Row{"America/New_York", 5 * 3600}}) {
        const ScopedTimeZone zone(name);
        if (!zone) continue;
        ++tried;
        EXPECT_EQ(CTimeHelper::FileTimeToUnixTime(QvFileTime::FromSteps(winter)), 1072958400 + offset) << name;
        EXPECT_EQ(CTimeHelper::FileTimeToUnixTime(QvFileTime::FromSteps(summer)), 1088683200 + offset) << name;
        EXPECT_EQ(CTimeHelper::FileTimeToUnixTime(QvFileTime::FromSteps(kEpoch - 10000000)), -1 + offset);
    }
    if (tried == 0) GTEST_SKIP() << kNoTimeZone;
}

}  // namespace
