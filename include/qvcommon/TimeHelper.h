#pragma once

/// @file Calendar arithmetic and the library's two date formats. Weeks are blocks of seven days counted from 1 January,
/// not ISO weeks: 1 to 7 January is week 1, and 31 December is week 53. Members that modify a date leave an invalid one
/// unchanged, unless stated otherwise. Nothing here raises an error.

#include "qvcommon/framework/DateTime.h"

/// Calendar arithmetic on dates. All members are stateless.
class QVCOMMON_API CTimeHelper {
public:
    /// Returns the week; 1 for an invalid date.
    static int GetWeek(const COleDateTime& date);
    /// Stores the week as counted by GetWeek, and the year of the date: weeks always belong to the same year as their
    /// days. 1 and -1 for an invalid date.
    static void GetWeekAndYear(const COleDateTime& date, int& week, int& year);

    /// Each: Returns the number of days in a month, from 1; 0 for a month outside 1 to 12. The two take their arguments
    /// in opposite orders.
    static int GetLastDayOfMonth(int year, int month);
    static int GetDaysInMonth(int month, int year);

    /// Sets the time to 00:00:00.
    static void ToStartOfDay(COleDateTime& date);
    /// Sets the time to 23:59:59.
    static void ToEndOfDay(COleDateTime& date);

    /// Rounds to the nearest minute, 30 seconds and more up, but never past midnight: the result is then 23:59:59. With
    /// `keepDate` 0 only the time is kept, on 30 December 1899.
    static void RoundMinutes(COleDateTime& date, int keepDate);

    /// Clamps the date to the week of the year. An earlier one becomes the week's first day at 00:00:00; a later one
    /// the week's last day at 23:59:59, in week 53 the last second of the year. An invalid date is before every week; a
    /// year outside 100 to 9999 gives an invalid date.
    static void AdjustWithinRange(COleDateTime& date, int year, int week);

    /// Each: Returns "05 May 2004 14:03:07" and "May 05 2004, 14:03:07", with the month in the current C locale,
    /// independent of the user's settings.
    static CString ToStdDateTime(const COleDateTime& date);
    static CString GetLongDateString(const COleDateTime& date);

    /// Converts the date, as local time, to seconds since 1970 UTC; the system's zone determines daylight saving time.
    /// An ambiguous time is the first of the two, and a skipped one is interpreted with the offset before the skip. -1
    /// for an invalid date or one that the system's zone does not cover (Windows: before 1601), and if `long` is too
    /// small (Windows: after 19 January 2038).
    static long GetTimeT(const COleDateTime& date);

    /// Converts a file time whose UTC fields are interpreted as local STANDARD time to seconds since 1970: the result
    /// is off by the zone's standard offset from UTC. 0 for a file time beyond the system's calendar (year 30827), -1
    /// if the zone does not cover it or `long` is too small.
    static long FileTimeToUnixTime(const QvFileTime& time);

    /// Each: Converts from local time to UTC and back, with the offset of the system's zone at that date (not the
    /// current one); ambiguous and skipped times as in GetTimeT. Rounded to seconds. The date is unchanged if the
    /// system cannot convert it (Windows: before 1601) and if the result would be invalid.
    static void ConvertToUtc(COleDateTime& date);
    static void ConvertToLocal(COleDateTime& date);

    /// Returns the weekly hours averaged over a year of 365.25 days minus a + b days.
    static double GetAvWorkHoursPerWeek(double hoursPerWeek, double a, double b);
    /// Each: Returns the same per day of the week, and per work day (infinite or NaN if there are 0).
    static double GetAvWorkHoursPerDay(double hoursPerWeek, double a, double b);
    static double GetAvWorkHoursPerWorkDay(double hoursPerWeek, double workDaysPerWeek, double a, double b);
};
