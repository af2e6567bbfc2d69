#pragma once

#include <sys/stat.h>

namespace qv::platform {

/// Copies mode, owner, group, access lists and extended attributes to another file, as far as the user may set them.
/// @param wanted  the status of `from`
void CopyAttributes(int from, const struct stat& wanted, int to);

}  // namespace qv::platform
