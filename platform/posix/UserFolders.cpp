#include "platform/UserFolders.h"

#include <cerrno>
#include <cstdlib>

#include "platform/Path.h"
#include "platform/posix/System.h"
#include "platform/posix/UserEntry.h"

// The XDG base directories (freedesktop.org), version 0.8.

namespace qv::platform {
namespace {

std::string g_userFolder;  // replaces all others

std::string Home() {
    if (const char* const home = std::getenv("HOME"); home && *home == '/') return home;
    return OwnUserEntry(&passwd::pw_dir);
}

std::string FolderIn(const char* variable, const char* belowHome) {
    const char* const folder = std::getenv(variable);
    if (folder && *folder == '/') return folder;
    const std::string home = Home();
    return home.empty() ? "" : home + belowHome;
}

std::string FirstFolderIn(const char* variable, const char* otherwise) {
    const char* const folders = std::getenv(variable);
    const std::string all = folders ? folders : "";
    const std::string first = all.substr(0, all.find(':'));
    return first.starts_with('/') ? first : otherwise;
}

std::string NativeFolder(UserFolderKind kind) {
    switch (kind) {
        case UserFolderKind::Data: return FolderIn("XDG_DATA_HOME", "/.local/share");
        case UserFolderKind::Settings: return FolderIn("XDG_CONFIG_HOME", "/.config");
        case UserFolderKind::Cache: return FolderIn("XDG_CACHE_HOME", "/.cache");
        case UserFolderKind::MachineSettings: break;
    }
    return FirstFolderIn("XDG_CONFIG_DIRS", "/etc/xdg");
}

}  // namespace

std::string UserFolder(UserFolderKind kind) {
    return LibraryPath(g_userFolder.empty() ? NativeFolder(kind) : g_userFolder);
}

bool UseUserFolder(const char* folder) {
    g_userFolder = folder ? folder : "";
    return true;
}

Status MakeUserFolder(const std::string& path, Access access) {
    const std::string native = NativePath(path);
    const mode_t mode = access == Access::Owner ? 0700 : 0755;
    Status made;
    for (std::size_t end = 0; end != native.npos;) {
        end = native.find('/', end + 1);
        const std::string folder = native.substr(0, end);
        const auto call = sys::mkdirat(AT_FDCWD, folder.c_str(), mode);
        if (call.ok() && access != Access::Owner)  // regardless of the umask
            sys::fchmodat(AT_FDCWD, folder.c_str(), mode, 0).IgnoreError();
        // A parent folder that cannot be created, because it exists or is mounted read-only, is not an error by itself.
        made = call.error() == EEXIST ? Status() : call.statusAt(path.c_str());
    }
    return made;
}

}  // namespace qv::platform
