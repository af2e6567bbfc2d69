#pragma once

/// @file Where programs keep what belongs to their users.

#include <string>

#include "platform/Status.h"

namespace qv::platform {

enum class UserFolderKind {
    Data,            ///< on Linux $XDG_DATA_HOME, else ~/.local/share; on Windows the roaming application data
    Settings,        ///< on Linux $XDG_CONFIG_HOME, else ~/.config; on Windows the roaming application data
    Cache,           ///< on Linux $XDG_CACHE_HOME, else ~/.cache; on Windows the local application data
    MachineSettings  ///< for all users: on Linux the first of $XDG_CONFIG_DIRS, else /etc/xdg; on Windows the common
                     ///< application data
};

/// The folder, in the library's form without a final separator; empty where the system has none. It need not exist.
/// Variables that hold no absolute path do not count.
std::string UserFolder(UserFolderKind kind);

/// Makes the folder and those above it that are missing, on Linux for the user alone. No failure for one that exists.
Status MakeUserFolder(const std::string& path);

/// Makes the folder, in the system's own form, take the place of all these folders in this process; null ends that. False, and
/// nothing done, where settings are not kept in a folder. Not safe while other threads use the folders.
bool UseUserFolder(const char* folder);

}  // namespace qv::platform
