#pragma once

#include <memory>

namespace qv::platform {

/// While it lives, signals that end the process (SIGHUP, SIGINT, SIGQUIT, SIGTERM) wait, so that a file with a temporary
/// name is not left by them. It holds for the calling thread, and for good for those that it starts meanwhile; another
/// thread of the program that does not hold signals may still take them. To be used for milliseconds only. On Windows,
/// where other threads carry out such requests, it does nothing.
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
