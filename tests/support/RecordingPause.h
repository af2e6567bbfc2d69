#pragma once

#include <vector>

#include "framework/Pause.h"

/// Keeps the pauses that the library makes, and makes none, for as long as it lives.
class RecordingPause : public qv::IPause {
public:
    RecordingPause() : m_before(qv::SetPause(this)) {}
    ~RecordingPause() override { qv::SetPause(m_before); }
    RecordingPause(const RecordingPause&) = delete;
    RecordingPause& operator=(const RecordingPause&) = delete;

    void Pause(unsigned long long milliseconds) override { pauses.push_back(milliseconds); }

    std::vector<unsigned long long> pauses;

private:
    qv::IPause* m_before;
};
