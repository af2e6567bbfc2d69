#include "platform/SignalHold.h"

namespace qv::platform {

struct SignalHold::Body {};

SignalHold::SignalHold() = default;
SignalHold::~SignalHold() = default;

}  // namespace qv::platform
