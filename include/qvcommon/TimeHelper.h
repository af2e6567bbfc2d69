#pragma once

/// @file Calendar arithmetic and the library's two forms of a date. Weeks are blocks of seven days counted from 1 January,
/// not ISO weeks: 1 to 7 January is week 1, and 31 December is week 53. What changes a date leaves one that is not valid
/// alone, unless a member says otherwise. Nothing here raises an error.

#include "qvcommon/framework/DateTime.h"

/// Calendar arithmetic on dates. All members are free of state.
class QVCOMMON_API CTimeHelper {
public:
    /// 1 for a date that is not valid.
    static int GetWeek(const COleDateTime& date);
    /// The week as GetWeek counts it, and the year that the date is in: weeks never belong to another year than their
    /// days. 1 and -1 for a date that is not valid.
    static void GetWeekAndYear(const COleDateTime& date, int& week, int& year);

    /// Each: The days of a month, from 1; 0 for a month outside 1 to 12. The two take their arguments in opposite
    /// orders.
    static int GetLastDayOfMonth(int year, int month);
    static int GetDaysInMonth(int month, int year);

    /// The same day at 00:00:00.
    static void ToStartOfDay(COleDateTime& date);
    /// The same day at 23:59:59.
    static void ToEndOfDay(COleDateTime& date);

    /// Rounds to the nearest minute, 30 seconds and more up, but never past midnight: what would get there becomes
    /// 23:59:59. With `keepDate` 0 only the time is kept, on 30 December 1899.
    static void RoundMinutes(COleDateTime& date, int keepDate);

    /// Clamps the date into the week of the year. One before it becomes the week's first day at 00:00:00; one after it the
    /// week's last day at 23:59:59, in week 53 the last second of the year. A date that is not valid lies before every
    /// week; a year outside 100 to 9999 leaves an invalid date.
    static void AdjustWithinRange(COleDateTime& date, int year, int week);

    /// Each: "05 May 2004 14:03:07" and "May 05 2004, 14:03:07", with the month by the current C locale. Neither
    /// follows the user's own settings.
    static CString ToStdDateTime(const COleDateTime& date);
    static CString GetLongDateString(const COleDateTime& date);

    /// Seconds since 1970 UTC of the date taken as local time; the system's zone decides whether daylight saving time
    /// rules. Of an hour that the clocks show twice it is the first, and one that they skip is read by the clock before the
    /// skip. -1 for a date that is not valid or that the system's zone does not cover (Windows: before 1601), and where
    /// `long` is too small (Windows: after 19 January 2038).
    static long GetTimeT(const COleDateTime& date);

    /// Seconds since 1970 of a file time whose UTC fields are taken, as they are, for the local STANDARD time: so the
    /// result is off by the zone's standard difference from UTC. 0 for a file time beyond the system's calendar (year
    /// 30827), -1 where the zone does not cover it or `long` is too small.
    static long FileTimeToUnixTime(const QvFileTime& time);

    /// Each: From local time to UTC and back, by the rules that the system's zone has at that date (not by today's
    /// difference), for repeated and skipped hours as in GetTimeT. To the second: fractions are rounded. The date is
    /// left unchanged where the system cannot tell (Windows: before 1601) and where the result is no valid date.
    static void ConvertToUtc(COleDateTime& date);
    static void ConvertToLocal(COleDateTime& date);

    /// The weekly hours averaged over a year of 365.25 days from which a + b days are taken.
    static double GetAvWorkHoursPerWeek(double hoursPerWeek, double a, double b);
    /// Each: The same for each of the week's seven days, and for each of its work days (infinite or NaN when these are
    /// 0).
    static double GetAvWorkHoursPerDay(double hoursPerWeek, double a, double b);
    static double GetAvWorkHoursPerWorkDay(double hoursPerWeek, double workDaysPerWeek, double a, double b);
};
