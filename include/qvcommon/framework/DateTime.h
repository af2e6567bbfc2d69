#pragma once

/// @file Dates and spans of time as doubles that count days.
///
/// A date counts from 30 December 1899, midnight: the part before the decimal point is the day, what stands behind it the
/// time of that day, forwards for negative days too. So -1.25 is 29 December 1899 06:00, and 0.25 and -0.25 are one moment.
/// Dates run from 1 January 100 to 31 December 9999 of the Gregorian calendar; anything outside is invalid, and so is
/// every result that would lie there. The date knows no time zone: its fields are what its maker meant by them.
///
/// Fields are read to the nearest second, so 59.9997 seconds are a full minute; but no reading passes the year 9999.

#include <compare>
#include <concepts>
#include <ctime>

#include "qvcommon/framework/FileTime.h"
#include "qvcommon/framework/String.h"

#pragma push_macro("GetCurrentTime")  // a system header's macro; the class declares its expansion, too
#undef GetCurrentTime

/// A length of time in days, less than 3615900 days either way; a longer one is invalid.
class QVCOMMON_API COleDateTimeSpan {
public:
    /// Whether the span means anything; null ones come from null dates.
    enum DateTimeSpanStatus { valid = 0, invalid = 1, null = 2 };

    /// Valid: no time.
    COleDateTimeSpan() = default;
    /// So many days; invalid beyond the limit.
    COleDateTimeSpan(double days);
    /// The parts may have any size and sign; they are added up.
    COleDateTimeSpan(long days, int hours, int minutes, int seconds);

    /// Whether the span means anything. Setting it leaves m_span alone.
    DateTimeSpanStatus GetStatus() const { return m_status; }
    void SetStatus(DateTimeSpanStatus status) { m_status = status; }
    /// Each: the whole length in that unit, with its fraction.
    double GetTotalDays() const { return m_span; }
    double GetTotalHours() const { return m_span * 24; }
    double GetTotalMinutes() const { return m_span * (24 * 60); }
    double GetTotalSeconds() const { return m_span * (24 * 60 * 60); }

    /// The same length the other way.
    COleDateTimeSpan operator-() const;

    double m_span = 0;                    ///< days
    DateTimeSpanStatus m_status = valid;  ///< as GetStatus returns it
};

/// A date with its time, to fractions of a second.
class QVCOMMON_API COleDateTime {
public:
    /// Whether the date means anything; `error` is what the fields of one that is not valid return.
    enum DateTimeStatus { error = -1, valid = 0, invalid = 1, null = 2 };

    /// Valid: 30 December 1899, midnight.
    COleDateTime() = default;
    /// The moment of that number; invalid outside of the range.
    COleDateTime(double days);
    /// Seconds since 1970 UTC, and a file time: the local time then, invalid where the system cannot tell it.
    COleDateTime(std::int64_t seconds);
    /// Where the C library counts in 32 bits, its times are seconds too.
    template <std::same_as<std::time_t> T>
    requires(!std::same_as<T, std::int64_t>) COleDateTime(T seconds) : COleDateTime(std::int64_t{seconds}) {}
    /// Days are a double, seconds 64 bits: another number does not say which of them it is.
    template <class T>
    requires(std::is_arithmetic_v<T> && !std::same_as<T, float> && !std::same_as<T, double> &&
             !std::same_as<T, std::int64_t> && !std::same_as<T, std::time_t>) COleDateTime(T)
    = delete;
    /// The local time at a file time; invalid where the system cannot tell it.
    COleDateTime(const QvFileTime& time);
    /// As SetDateTime.
    COleDateTime(int year, int month, int day, int hour, int minute, int second);

    /// Each: The local time now.
    static COleDateTime GetCurrentTime();
    static COleDateTime GetTickCount() { return GetCurrentTime(); }

    /// Whether the date means anything.
    DateTimeStatus GetStatus() const { return m_status; }
    /// Marks the date only; m_dt stays.
    void SetStatus(DateTimeStatus status) { m_status = status; }

    /// Each: The fields, -1 (`error`) for a date that is not valid.
    int GetYear() const;
    int GetMonth() const;  ///< from 1
    int GetDay() const;    ///< from 1
    int GetHour() const;
    int GetMinute() const;
    int GetSecond() const;
    int GetDayOfWeek() const;  ///< from 1, Sunday
    int GetDayOfYear() const;  ///< from 1

    /// Each: Set the date by its fields; SetDate at midnight, SetTime on 30 December 1899.
    /// @return 0 when the fields name a moment in range. Otherwise 1: the date is invalid, and m_dt stays.
    int SetDateTime(int year, int month, int day, int hour, int minute, int second);
    int SetDate(int year, int month, int day) { return SetDateTime(year, month, day, 0, 0, 0); }
    int SetTime(int hour, int minute, int second) { return SetDateTime(1899, 12, 30, hour, minute, second); }

    /// Reads a date, a time, or both, as people and programs write them. What is missing is 30 December 1899 for the date,
    /// midnight for the time, this year for the year, the first for the day.
    ///
    /// Windows first asks the system, by the user's default locale; it takes more than is written here, and has a window of
    /// its own for years of two digits. What it refuses, and all of it on Linux, is read by these rules:
    /// - ISO 8601, "2004-05-05T14:03:07" and "20040505T140307", with a blank for the T, without seconds or time, and with
    ///   a fraction of the second (cut) and "Z" or an offset. The fields count as they are written: nothing is converted to
    ///   another zone.
    /// - Two or three numbers, or one or two and the name of a month, with blanks or one of "/ - . ," between. A number of
    ///   three or four digits is the year. Where numbers alone leave it open, the locale's order of day, month and year
    ///   counts, and the other orders after it when no such date exists.
    /// - Years of two digits are 1930 to 2029.
    /// - Times "14:03", "14:03:07", "2:03 PM" and "2 PM", before or after the date; UTC or GMT after one means nothing.
    /// - Months, days of the week (which mean nothing either) and AM and PM by the names of the C locale and, on Linux, of
    ///   the current one, in any case; and on Linux the words, and within times the points, that the current locale
    ///   writes between numbers.
    /// So every date that Format wrote in the "C" or the current locale by "%d %b %Y %H:%M:%S" comes back.
    ///
    /// @return false, and an invalid date, for anything else. Takes time in line with the text's length.
    bool ParseDateTime(std::string_view text);

    /// Writes the date by the conversions of C's strftime, names and %c, %x, %X, %p in the current C locale, so in that of
    /// the process. All of ISO C's conversions work on every system and for every year; the modifiers E and O mean nothing,
    /// %z and %Z write nothing, %Y writes the year without zeros in front. An unknown conversion is written as it stands.
    /// On Windows %c and %x before 1900 take the form of the "C" locale.
    /// @return "Invalid DateTime" for an invalid date, nothing for a null one.
    CString Format(std::string_view format) const;

    /// Each: Dates are moved and measured in the even flow of time, not by their odd negative numbers. The result is
    /// null when a side is, else invalid when a side is or it is out of range.
    COleDateTime operator+(const COleDateTimeSpan& span) const;
    COleDateTime operator-(const COleDateTimeSpan& span) const { return *this + -span; }
    COleDateTimeSpan operator-(const COleDateTime& other) const;
    COleDateTime& operator+=(const COleDateTimeSpan& span) { return *this = *this + span; }
    COleDateTime& operator-=(const COleDateTimeSpan& span) { return *this = *this - span; }

    /// Each: By moment, to the last bit. Dates that are not valid equal those of the same status and have no order.
    friend QVCOMMON_API std::partial_ordering QVCOMMON_CALL operator<=>(const COleDateTime& a, const COleDateTime& b);
    friend bool operator==(const COleDateTime& a, const COleDateTime& b) { return std::is_eq(a <=> b); }

    double m_dt = 0;                  ///< days, as the file's head says
    DateTimeStatus m_status = valid;  ///< as GetStatus returns it

private:
    void SetLocalTime(std::int64_t seconds);
};

#pragma pop_macro("GetCurrentTime")
