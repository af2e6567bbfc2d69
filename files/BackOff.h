#pragma once

#include "framework/Pause.h"

namespace qv {

/// Pauses that begin with half a second and grow by half each time.
class BackOff {
public:
    void Wait() {
        Pause(m_delay);
        if (m_delay <= kLongest) m_delay = m_delay * 3 / 2;
    }

private:
    static constexpr unsigned long long kLongest = 1ull << 40;  // decades: far from overflowing, too

    unsigned long long m_delay = 500;
};

}  // namespace qv
