#include "platform/Volume.h"

#include <windows.h>

namespace qv::platform {

bool IsVolume(const char* path) {
    return *path && ::GetVolumeInformationA(path, nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0);
}

std::string ShortPath(const char* path) {
    char text[MAX_PATH];
    const DWORD length = ::GetShortPathNameA(path, text, sizeof text);
    return length > 0 && length < sizeof text ? std::string(text, length) : std::string(path);
}

}  // namespace qv::platform
