#include "platform/Path.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "platform/posix/System.h"

namespace qv::platform {
namespace {

constexpr std::string_view kBackslash = "\xEF\x81\x9C", kEscape = "\xEF\x80\xA5";
constexpr char kLead = '\xEF';

bool HasStandIn(std::string_view text) {
    return text.starts_with(kBackslash) || text.starts_with(kEscape);
}

std::string WithoutStandIns(std::string_view text) {
    std::string native;
    native.reserve(text.size());
    while (!text.empty()) {
        const bool escaped = text.starts_with(kEscape) && HasStandIn(text.substr(kEscape.size()));
        if (escaped) text.remove_prefix(kEscape.size());
        const bool isBackslash = !escaped && text.starts_with(kBackslash);
        const std::size_t length = isBackslash || escaped ? kBackslash.size() : 1;
        native.append(isBackslash ? "\\" : text.substr(0, length));
        text.remove_prefix(length);
    }
    return native;
}

std::string WithStandIns(std::string_view native) {
    std::string text;
    text.reserve(native.size() + kBackslash.size());
    for (; !native.empty(); native.remove_prefix(1)) {
        if (HasStandIn(native)) text += kEscape;
        if (native.front() == '\\')
            text += kBackslash;
        else
            text += native.front();
    }
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
    std::string native(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    return native.find(kLead) == native.npos ? native : WithoutStandIns(native);
}

std::string LibraryPath(std::string_view native) {
    std::string path = LibraryName(std::string(native));
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

std::string LibraryName(std::string name) {
    if (!IsPlainInBothForms(name)) name = WithStandIns(name);
    return name;
}

bool IsPlainInBothForms(std::string_view name) {
    return name.find('\\') == name.npos && name.find(kLead) == name.npos;
}

std::size_t LongestPath() {
    return PATH_MAX - 1;
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
    sys::chdir(NativePath(path).c_str()).IgnoreError();  // ignored by contract
}

std::string SystemFolder() {
    return "\\";
}

}  // namespace qv::platform
