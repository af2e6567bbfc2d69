#include "platform/Path.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace qv::platform {
namespace {

std::string Replaced(std::string_view path, char from, char to) {
    std::string text(path);
    std::replace(text.begin(), text.end(), from, to);
    return text;
}

bool IsPlainAbsolute(std::string_view native) {
    return native.starts_with('/') && native.find("//") == native.npos && native.find("/.") == native.npos;
}

}  // namespace

bool HasDriveLetters() {
    return false;
}

std::string NativePath(std::string_view path) {
    return Replaced(path, '\\', '/');
}

std::string LibraryPath(std::string_view native) {
    return Replaced(native, '/', '\\');
}

std::string FullPath(const char* path) {
    const std::string native = NativePath(path);
    if (IsPlainAbsolute(native)) return LibraryPath(native);
    std::error_code error;
    const auto full = std::filesystem::absolute(native, error);
    return error ? std::string(path) : LibraryPath(full.lexically_normal().native());
}

std::string TempDirectory() {
    const char* const named = std::getenv("TMPDIR");
    std::string folder = LibraryPath(named && *named ? named : "/tmp");
    if (folder.back() != '\\') folder += '\\';
    return folder;
}

std::string CurrentFolder() {
    std::error_code error;
    return LibraryPath(std::filesystem::current_path(error).native());
}

void ChangeFolder(const std::string& path) {
    std::error_code ignored;
    std::filesystem::current_path(NativePath(path), ignored);
}

std::string SystemFolder() {
    return "\\";
}

}  // namespace qv::platform
