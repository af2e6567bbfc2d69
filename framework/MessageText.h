#pragma once

#include <string_view>

#include "qvcommon/framework/Types.h"

namespace qv {

/// Copies a message into a caller's buffer of `maximum` bytes, cut to fit, always ended with a zero byte.
/// @return non-zero when the message is not empty.
BOOL CopyMessage(std::string_view message, char* text, UINT maximum);

}  // namespace qv
