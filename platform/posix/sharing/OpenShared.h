#pragma once

#include "platform/FileOpen.h"
#include "platform/posix/Location.h"

namespace qv::platform {

/// Opens a file under the share modes, as specified by OpenFile. A failure has the system's error number, EBUSY if
/// other openers exclude the request.
Result<int> OpenShared(const Location& at, const OpenRequest& request, UniqueFd& file);

}  // namespace qv::platform
