#pragma once

#include <string>

namespace qv::platform {

/// Makes a new file accessible to the users of its folder: world-readable, and writable for all users who can write to
/// the folder, regardless of the umask. Permissions that the user may not grant are unchanged.
void GrantAsFolder(int file, int folder, const std::string& folderPath);

}  // namespace qv::platform
