#pragma once

#include <memory>

namespace qv::platform {

/// Blocks signals that terminate the process (SIGHUP, SIGINT, SIGQUIT, SIGTERM) during its lifetime, so that they do
/// not prevent the removal of a temporary file. It applies to the calling thread, and permanently to those that it
/// starts meanwhile; other threads may still receive the signals. Use it only for milliseconds. A no-op on Windows,
/// where other threads carry out such requests.
class SignalHold {
public:
    SignalHold();
    ~SignalHold();
    SignalHold(const SignalHold&) = delete;
    SignalHold& operator=(const SignalHold&) = delete;

private:
    struct Body;
    std::unique_ptr<Body> m_body;
};

}  // namespace qv::platform
