#pragma once

#include <string_view>

#include "qvcommon/framework/Types.h"

namespace qv {

/// Copies a message to a caller's buffer of `maximum` bytes, truncated to fit, always zero-terminated.
/// @return non-zero if the message is not empty.
BOOL CopyMessage(std::string_view message, char* text, UINT maximum);

}  // namespace qv
