#pragma once

/// @file What the tool asks of the console.

#include "qvcommon/Export.h"

namespace qv::platform {

/// Whether someone may be reading standard error as it is written.
QVCOMMON_INTERNAL_API bool IsErrorTerminal();

}  // namespace qv::platform
