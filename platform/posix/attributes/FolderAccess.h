#pragma once

#include <string>

namespace qv::platform {

/// Opens a file that has just been made to the users of its folder: everybody may read it, and whoever may write in the
/// folder may write it, whatever the umask. What the maker may not give away stays as it is.
void GrantAsFolder(int file, int folder, const std::string& folderPath);

}  // namespace qv::platform
