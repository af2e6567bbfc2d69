#pragma once

/// @file The folders for user data.

#include <string>

#include "platform/AtomicFile.h"

namespace qv::platform {

enum class UserFolderKind {
    Data,            ///< on Linux $XDG_DATA_HOME, else ~/.local/share; on Windows the roaming application data
    Settings,        ///< on Linux $XDG_CONFIG_HOME, else ~/.config; on Windows the roaming application data
    Cache,           ///< on Linux $XDG_CACHE_HOME, else ~/.cache; on Windows the local application data
    MachineSettings  ///< for all users: on Linux the first of $XDG_CONFIG_DIRS, else /etc/xdg; on Windows the common
                     ///< application data
};

/// Returns the folder, in the library's form without a trailing separator; empty if the system has none. It need not
/// exist. Variables without an absolute path are ignored.
std::string UserFolder(UserFolderKind kind);

/// Creates the folder and its missing parents. On Linux Access::Owner gives access to the user only; otherwise others may
/// read. Succeeds if the name exists, regardless of its type.
Status MakeUserFolder(const std::string& path, Access access = Access::Owner);

/// Makes the folder, in the system's form, replace all these folders in this process; null restores them. Returns
/// false, without effect, if settings are not stored in a folder. Must not be called while other threads use the
/// folders.
bool UseUserFolder(const char* folder);

}  // namespace qv::platform
