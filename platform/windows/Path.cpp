#include "platform/Path.h"

#include <algorithm>

#include "platform/windows/System.h"

namespace qv::platform {
namespace {

// Calls that fill a buffer return the length without the zero byte, or the size that the buffer should have had.
template <class Length>
std::string Filled(const char (&buffer)[MAX_PATH], const Result<Length>& length) {
    return length.ok() && length.value() < MAX_PATH ? std::string(buffer, length.value()) : std::string();
}

}  // namespace

bool HasDriveLetters() {
    return true;
}

std::string NativePath(std::string_view path) {
    return std::string(path);
}

std::string LibraryPath(std::string_view native) {
    std::string path(native);
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

std::string LibraryName(std::string name) {
    return name;
}

bool IsPlainInBothForms(std::string_view) {
    return true;
}

std::size_t LongestPath() {
    return MAX_PATH - 1;
}

std::string FullPath(const char* path) {
    const std::string native = NativePath(path);
    const auto size = sys::GetFullPathNameA(native.c_str(), 0, nullptr, nullptr);
    if (!size.ok()) return path;
    std::string full(size.value(), '\0');
    const auto length = sys::GetFullPathNameA(native.c_str(), size.value(), full.data(), nullptr);
    if (!length.ok() || length.value() >= full.size()) return path;
    full.resize(length.value());
    return full;
}

std::string TempDirectory() {
    char folder[MAX_PATH];
    return Filled(folder, sys::GetTempPathA(MAX_PATH, folder));
}

std::string CurrentFolder() {
    char folder[MAX_PATH];
    return Filled(folder, sys::GetCurrentDirectoryA(MAX_PATH, folder));
}

void ChangeFolder(const std::string& path) {
    sys::SetCurrentDirectoryA(NativePath(path).c_str()).IgnoreError();  // the contract
}

std::string SystemFolder() {
    char folder[MAX_PATH];
    return Filled(folder, sys::GetWindowsDirectoryA(folder, MAX_PATH));
}

}  // namespace qv::platform
