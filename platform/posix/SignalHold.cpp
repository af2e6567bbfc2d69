#include "platform/SignalHold.h"

#include "platform/posix/BlockedSignals.h"

namespace qv::platform {

struct SignalHold::Body {
    const BlockedSignals blocked{SIGHUP, SIGINT, SIGQUIT, SIGTERM};
};

SignalHold::SignalHold() : m_body(std::make_unique<Body>()) {}
SignalHold::~SignalHold() = default;

}  // namespace qv::platform
