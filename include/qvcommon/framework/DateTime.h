#pragma once

/// @file Dates and time spans as doubles that count days.
///
/// A date counts from 30 December 1899, midnight: the integer part is the day, the absolute value of the fraction the
/// time of that day, for negative days too. So -1.25 is 29 December 1899 06:00, and 0.25 and -0.25 are the same moment.
/// Dates range from 1 January 100 to 31 December 9999 of the Gregorian calendar; anything outside is invalid, including
/// results outside. A date has no time zone: its creator defines the meaning of its fields.
///
/// Fields are rounded to the nearest second, so 59.9997 seconds are a full minute; but never past the year 9999.

#include <compare>
#include <concepts>
#include <ctime>

#include "qvcommon/framework/FileTime.h"
#include "qvcommon/framework/String.h"

#pragma push_macro("GetCurrentTime")  // a system header's macro; the class declares its expansion, too
#undef GetCurrentTime

/// A duration in days, less than 3615900 days in either direction; a longer one is invalid.
class QVCOMMON_API COleDateTimeSpan {
public:
    /// Whether the span is valid; null ones result from null dates.
    enum DateTimeSpanStatus { valid = 0, invalid = 1, null = 2 };

    /// Valid: zero.
    COleDateTimeSpan() = default;
    /// The given number of days; invalid beyond the limit.
    COleDateTimeSpan(double days);
    /// The parts may have any size and sign; they are added.
    COleDateTimeSpan(long days, int hours, int minutes, int seconds);

    /// Whether the span is valid. Setting it does not change m_span.
    DateTimeSpanStatus GetStatus() const { return m_status; }
    void SetStatus(DateTimeSpanStatus status) { m_status = status; }
    /// Each: Returns the whole duration in that unit, including its fraction.
    double GetTotalDays() const { return m_span; }
    double GetTotalHours() const { return m_span * 24; }
    double GetTotalMinutes() const { return m_span * (24 * 60); }
    double GetTotalSeconds() const { return m_span * (24 * 60 * 60); }

    /// Returns the negated duration.
    COleDateTimeSpan operator-() const;

    double m_span = 0;                    ///< days
    DateTimeSpanStatus m_status = valid;  ///< as GetStatus returns it
};

/// A date with its time, to fractions of a second.
class QVCOMMON_API COleDateTime {
public:
    /// Whether the date is valid; `error` is the value of the fields of one that is not.
    enum DateTimeStatus { error = -1, valid = 0, invalid = 1, null = 2 };

    /// Valid: 30 December 1899, midnight.
    COleDateTime() = default;
    /// The moment of that number; invalid if out of range.
    COleDateTime(double days);
    /// The local time of seconds since 1970 UTC, or of a file time; invalid if the system cannot convert it.
    COleDateTime(std::int64_t seconds);
    /// If the C library's time_t has 32 bits, it is also accepted as seconds.
    template <std::same_as<std::time_t> T>
    requires(!std::same_as<T, std::int64_t>) COleDateTime(T seconds) : COleDateTime(std::int64_t{seconds}) {}
    /// Days are a double, seconds 64 bits: other numbers would be ambiguous.
    template <class T>
    requires(std::is_arithmetic_v<T> && !std::same_as<T, float> && !std::same_as<T, double> &&
             !std::same_as<T, std::int64_t> && !std::same_as<T, std::time_t>) COleDateTime(T)
    = delete;
    /// The local time of a file time; invalid if the system cannot convert it.
    COleDateTime(const QvFileTime& time);
    /// As SetDateTime.
    COleDateTime(int year, int month, int day, int hour, int minute, int second);

    /// Each: Returns the current local time.
    static COleDateTime GetCurrentTime();
    static COleDateTime GetTickCount() { return GetCurrentTime(); }

    /// Returns whether the date is valid.
    DateTimeStatus GetStatus() const { return m_status; }
    /// Sets only the status; m_dt is unchanged.
    void SetStatus(DateTimeStatus status) { m_status = status; }

    /// Each: Returns the field; -1 (`error`) for an invalid date.
    int GetYear() const;
    int GetMonth() const;  ///< from 1
    int GetDay() const;    ///< from 1
    int GetHour() const;
    int GetMinute() const;
    int GetSecond() const;
    int GetDayOfWeek() const;  ///< from 1, Sunday
    int GetDayOfYear() const;  ///< from 1

    /// Each: Sets the date from its fields; SetDate at midnight, SetTime on 30 December 1899.
    /// @return 0 if the fields denote a moment in range. Otherwise 1: the date is invalid, and m_dt is unchanged.
    int SetDateTime(int year, int month, int day, int hour, int minute, int second);
    int SetDate(int year, int month, int day) { return SetDateTime(year, month, day, 0, 0, 0); }
    int SetTime(int hour, int minute, int second) { return SetDateTime(1899, 12, 30, hour, minute, second); }

    /// Parses a date, a time, or both, as written by people and programs. Defaults are 30 December 1899 for the date,
    /// midnight for the time, the current year, the first for the day.
    ///
    /// Windows first asks the system, with the user's default locale; it accepts more formats than listed here, and has
    /// its own window for two-digit years. What it rejects, and everything on Linux, is parsed by these rules:
    /// - ISO 8601, "2004-05-05T14:03:07" and "20040505T140307", with a blank for the T, without seconds or time, and
    ///   with a fraction of the second (truncated) and "Z" or an offset. The fields are taken as written, without
    ///   conversion to another zone.
    /// - Two or three numbers, or one or two and the name of a month, separated by blanks or one of "/ - . ,". A number
    ///   of three or four digits is the year. If numbers alone are ambiguous, the locale's order of day, month and year
    ///   is used, and other orders if no such date exists.
    /// - Two-digit years are 1930 to 2029.
    /// - Times "14:03", "14:03:07", "2:03 PM" and "2 PM", before or after the date; UTC or GMT after one is ignored.
    /// - Months, days of the week (which are ignored) and AM and PM by the names of the C locale and, on Linux, of the
    ///   current one, in any case; and on Linux the words, and within times the dots, that the current locale writes
    ///   between numbers.
    /// So every date written by Format in the "C" or the current locale with "%d %b %Y %H:%M:%S" can be parsed.
    ///
    /// @return false, and an invalid date, for anything else. O(n) in the length of the text.
    bool ParseDateTime(std::string_view text);

    /// Formats the date with the conversions of C's strftime; names and %c, %x, %X, %p use the current C locale, and
    /// thus that of the process. All of ISO C's conversions are supported on every system and for every year; the
    /// modifiers E and O are ignored, %z and %Z write nothing, %Y writes the year without leading zeros. An unknown
    /// conversion is written verbatim. On Windows %c and %x before 1900 use the form of the "C" locale.
    /// @return "Invalid DateTime" for an invalid date, an empty string for a null one.
    CString Format(std::string_view format) const;

    /// Each: Computes in linear time, not with the discontinuous negative numbers. The result is null if an operand is,
    /// else invalid if an operand is or it is out of range.
    COleDateTime operator+(const COleDateTimeSpan& span) const;
    COleDateTime operator-(const COleDateTimeSpan& span) const { return *this + -span; }
    COleDateTimeSpan operator-(const COleDateTime& other) const;
    COleDateTime& operator+=(const COleDateTimeSpan& span) { return *this = *this + span; }
    COleDateTime& operator-=(const COleDateTimeSpan& span) { return *this = *this - span; }

    /// Each: Compares moments, to the last bit. Invalid dates equal those of the same status and are unordered.
    friend QVCOMMON_API std::partial_ordering QVCOMMON_CALL operator<=>(const COleDateTime& a, const COleDateTime& b);
    friend bool operator==(const COleDateTime& a, const COleDateTime& b) { return std::is_eq(a <=> b); }

    double m_dt = 0;                  ///< days, as described at the top of the file
    DateTimeStatus m_status = valid;  ///< as GetStatus returns it

private:
    void SetLocalTime(std::int64_t seconds);
};

#pragma pop_macro("GetCurrentTime")
