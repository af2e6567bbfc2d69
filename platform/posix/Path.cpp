#include "platform/Path.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "platform/posix/System.h"

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
    const std::string current = native.starts_with('/') ? "/" : NativePath(CurrentFolder());
    if (native.empty() || current.empty()) return path;
    return LibraryPath((std::filesystem::path(current) / native).lexically_normal().native());
}

std::string TempDirectory() {
    const char* const named = std::getenv("TMPDIR");
    std::string folder = LibraryPath(named && *named ? named : "/tmp");
    if (folder.back() != '\\') folder += '\\';
    return folder;
}

std::string CurrentFolder() {
    const std::unique_ptr<char, decltype(&std::free)> folder(sys::getcwd().value(), &std::free);
    return folder ? LibraryPath(folder.get()) : "";
}

void ChangeFolder(const std::string& path) {
    sys::chdir(NativePath(path).c_str()).IgnoreError();  // as the contract says
}

std::string SystemFolder() {
    return "\\";
}

}  // namespace qv::platform
