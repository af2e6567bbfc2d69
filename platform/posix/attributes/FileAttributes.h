#pragma once

#include <sys/stat.h>

namespace qv::platform {

/// Gives a file the mode, owner, group, access lists and extended attributes of another one, as far as the user may.
/// @param wanted  the status of `from`
void CopyAttributes(int from, const struct stat& wanted, int to);

}  // namespace qv::platform
