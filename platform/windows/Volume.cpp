#include "platform/Volume.h"

#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {

bool IsVolume(const char* path) {
    const std::wstring wide = WidePath(path);
    return !wide.empty() &&
           sys::GetVolumeInformationW(wide.c_str(), nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0).ok();
}

std::string FileSystemOf(const char* path) {
    wchar_t root[MAX_PATH + 1], kind[MAX_PATH + 1];
    constexpr DWORD kRoom = MAX_PATH + 1;
    const bool known = sys::GetVolumePathNameW(WidePath(path).c_str(), root, kRoom).ok() &&
                       sys::GetVolumeInformationW(root, nullptr, 0, nullptr, nullptr, nullptr, kind, kRoom).ok();
    return known ? FromSystem(kind) : std::string();
}

std::string ShortPath(const char* path) {
    std::wstring text(32767, L'\0');
    const auto length = sys::GetShortPathNameW(WidePath(path).c_str(), text.data(), static_cast<DWORD>(text.size()));
    if (!length.ok() || length.value() >= text.size()) return path;
    text.resize(length.value());
    return NarrowPath(text).value_or(path);
}

}  // namespace qv::platform
