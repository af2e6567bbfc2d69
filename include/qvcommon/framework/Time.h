#pragma once

#include "qvcommon/framework/DateTime.h"

/// A moment: seconds since 1970 UTC. A value.
class QVCOMMON_API CTime {
public:
    /// 1970.
    CTime() = default;
    /// So many seconds since 1970 UTC.
    explicit CTime(std::int64_t seconds) : m_time(seconds) {}
    /// Cut to the second; 1970 for a file time from the year 30828 on.
    explicit CTime(const QvFileTime& time) : m_time(time.UnixSeconds().value_or(0)) {}

    /// Seconds since 1970 UTC.
    std::int64_t GetTime() const { return m_time; }
    /// The local time then, as COleDateTime::Format writes it.
    CString Format(std::string_view format) const { return COleDateTime(m_time).Format(format); }

    /// By moment.
    friend auto operator<=>(const CTime&, const CTime&) = default;

private:
    std::int64_t m_time = 0;
};
