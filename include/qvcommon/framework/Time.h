#pragma once

#include "qvcommon/framework/DateTime.h"

/// A point in time: seconds since 1970 UTC. A value type.
class QVCOMMON_API CTime {
public:
    /// 1970.
    CTime() = default;
    /// The given number of seconds since 1970 UTC.
    explicit CTime(std::int64_t seconds) : m_time(seconds) {}
    /// Truncated to seconds; 1970 for a file time from the year 30828 on.
    explicit CTime(const QvFileTime& time) : m_time(time.UnixSeconds().value_or(0)) {}

    /// Returns seconds since 1970 UTC.
    std::int64_t GetTime() const { return m_time; }
    /// Formats the local time as COleDateTime::Format does.
    CString Format(std::string_view format) const { return COleDateTime(m_time).Format(format); }

    /// Compares the times.
    friend auto operator<=>(const CTime&, const CTime&) = default;

private:
    std::int64_t m_time = 0;
};
