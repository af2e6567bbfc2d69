#pragma once

#include <vector>

#include "platform/Clock.h"

/// A clock, in force while it lives, whose pauses take no time: it records them and advances its time.
class RecordingClock : public qv::platform::IClock {
public:
    RecordingClock() : m_previous(qv::platform::SetClock(this)) {}
    ~RecordingClock() override { qv::platform::SetClock(m_previous); }
    RecordingClock(const RecordingClock&) = delete;
    RecordingClock& operator=(const RecordingClock&) = delete;

    std::chrono::system_clock::time_point Now() override {
        return std::chrono::system_clock::now() +
               std::chrono::duration_cast<std::chrono::system_clock::duration>(m_slept);
    }
    std::chrono::steady_clock::time_point SteadyNow() override { return std::chrono::steady_clock::now() + m_slept; }
    void Sleep(std::chrono::nanoseconds duration) override {
        m_slept += duration;
        const auto whole = std::chrono::floor<std::chrono::milliseconds>(duration).count();
        if (whole > 0) pauses.push_back(whole);
    }

    std::vector<long long> pauses;  ///< in milliseconds; shorter ones are not recorded

private:
    std::chrono::nanoseconds m_slept{0};
    qv::platform::IClock* m_previous;
};
