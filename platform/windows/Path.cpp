#include "platform/Path.h"

#include <windows.h>

namespace qv::platform {

bool HasDriveLetters() {
    return true;
}

std::string NativePath(std::string_view path) {
    return std::string(path);
}

std::string LibraryPath(std::string_view native) {
    return std::string(native);
}

std::string FullPath(const char* path) {
    std::string full(::GetFullPathNameA(path, 0, nullptr, nullptr), '\0');
    const DWORD length = ::GetFullPathNameA(path, static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length == 0 || length >= full.size()) return path;
    full.resize(length);
    return full;
}

std::string TempDirectory() {
    char folder[MAX_PATH];
    const DWORD length = ::GetTempPathA(sizeof folder, folder);
    return length < sizeof folder ? std::string(folder, length) : std::string();
}

std::string CurrentFolder() {
    char folder[MAX_PATH];
    const DWORD length = ::GetCurrentDirectoryA(sizeof folder, folder);
    return length < sizeof folder ? std::string(folder, length) : std::string();
}

void ChangeFolder(const std::string& path) {
    ::SetCurrentDirectoryA(path.c_str());
}

std::string SystemFolder() {
    char folder[MAX_PATH];
    const UINT length = ::GetWindowsDirectoryA(folder, sizeof folder);
    return length < sizeof folder ? std::string(folder, length) : std::string();
}

}  // namespace qv::platform
