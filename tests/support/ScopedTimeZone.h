#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "platform/Path.h"
#include "platform/Time.h"

/// Why a test of zones was skipped.
inline constexpr const char* kNoTimeZone = "needs a zone that Windows does not give; under Wine set TZ";

/// Gives this process a time zone for as long as it lives. False where processes have no zone of their own; under Wine
/// they have the one that TZ named when they were started, and no other.
class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const char* name) {
        if (const char* const before = std::getenv("TZ")) m_before = before;
        m_set = qv::platform::UseTimeZone(name) || (qv::platform::HasDriveLetters() && m_before == name);
    }
    ~ScopedTimeZone() {
        if (m_set) qv::platform::UseTimeZone(m_before ? m_before->c_str() : nullptr);
    }
    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

    explicit operator bool() const { return m_set; }

private:
    std::optional<std::string> m_before;
    bool m_set;
};
