#pragma once

#include "platform/Clock.h"

namespace qv {

/// Pauses that begin at half a second and grow by a factor of 1.5.
class BackOff {
public:
    void Wait() {
        platform::Sleep(m_delay);
        if (m_delay <= kLongest) m_delay = m_delay * 3 / 2;
    }

private:
    static constexpr std::chrono::milliseconds kLongest{std::chrono::hours{1 << 18}};  // decades, far from overflowing

    std::chrono::milliseconds m_delay{500};
};

}  // namespace qv
