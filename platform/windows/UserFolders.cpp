#include "platform/UserFolders.h"

#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

int ShellNumberOf(UserFolderKind kind) {
    switch (kind) {
        case UserFolderKind::Cache: return CSIDL_LOCAL_APPDATA;
        case UserFolderKind::MachineSettings: return CSIDL_COMMON_APPDATA;
        case UserFolderKind::Data:
        case UserFolderKind::Settings: break;
    }
    return CSIDL_APPDATA;
}

}  // namespace

std::string UserFolder(UserFolderKind kind) {
    wchar_t path[MAX_PATH] = {};
    const int number = ShellNumberOf(kind) | CSIDL_FLAG_DONT_VERIFY;  // the folder need not exist
    const auto found = sys::SHGetFolderPathW(nullptr, number, nullptr, DWORD{SHGFP_TYPE_CURRENT}, path);
    return found.ok() ? ReachablePath(path).value_or(std::string()) : std::string();
}

bool UseUserFolder(const char*) {
    return false;
}

Status MakeUserFolder(const std::string& path, Access) {
    Status made;
    // The drive and the share before the first folder exist, or nothing can be created.
    for (std::size_t end = path.find('\\'); end != path.npos;) {
        end = path.find('\\', end + 1);
        const auto call = sys::CreateDirectoryW(WidePath(path.substr(0, end)).c_str(), nullptr);
        made = call.error() == ERROR_ALREADY_EXISTS ? Status() : call.statusAt(path.c_str());
    }
    return made;
}

}  // namespace qv::platform
