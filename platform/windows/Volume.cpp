#include "platform/Volume.h"

#include "platform/Path.h"
#include "platform/windows/System.h"

namespace qv::platform {

bool IsVolume(const char* path) {
    return *path &&
           sys::GetVolumeInformationA(NativePath(path).c_str(), nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0).ok();
}

std::string FileSystemOf(const char* path) {
    char root[MAX_PATH + 1], kind[MAX_PATH + 1];
    const bool known =
        sys::GetVolumePathNameA(NativePath(path).c_str(), root, DWORD{sizeof root}).ok() &&
        sys::GetVolumeInformationA(root, nullptr, 0, nullptr, nullptr, nullptr, kind, DWORD{sizeof kind}).ok();
    return known ? kind : "";
}

std::string ShortPath(const char* path) {
    char text[MAX_PATH];
    const auto length = sys::GetShortPathNameA(NativePath(path).c_str(), text, MAX_PATH);
    return length.ok() && length.value() < MAX_PATH ? std::string(text, length.value()) : std::string(path);
}

}  // namespace qv::platform
