#pragma once

#include "platform/FileOpen.h"
#include "platform/posix/Location.h"

namespace qv::platform {

/// Opens a file under the share modes, as OpenFile promises. A failure carries the system's error number, EBUSY when other
/// openers exclude the request.
Result<int> OpenInTurn(const Location& at, const OpenRequest& request, UniqueFd& file);

}  // namespace qv::platform
