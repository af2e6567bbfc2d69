#include "platform/Path.h"

#include <algorithm>

#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

constexpr DWORD kLongest = 32767;

/// Returns the path that a call writes to the given buffer, in the library's form. Empty if the call fails, or if the
/// code page cannot represent a path to the folder.
template <class Call>
std::string PathFrom(Call call) {
    std::wstring path(kLongest, L'\0');
    const auto length = call(kLongest, path.data());
    if (!length.ok() || length.value() >= kLongest) return {};
    path.resize(length.value());
    return ReachablePath(path).value_or(std::string());
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
    std::replace(path.begin(), path.end(), '/', '\\');  // no double-byte character contains a "/"
    return path;
}

std::string LibraryName(std::string name) {
    return ShownEntryName(std::move(name));
}

bool IsPlainInBothForms(std::string_view) {
    return true;
}

std::size_t LongestPath() {
    return kLongest - std::string_view("\\\\?\\UNC").size() - 1;
}

std::string FullPath(const char* path) {
    return NarrowPath(WideFullPath(WidePath(path))).value_or(std::string(path));
}

std::string TempDirectory() {
    return PathFrom([](DWORD size, wchar_t* path) { return sys::GetTempPathW(size, path); });
}

std::string CurrentFolder() {
    return PathFrom([](DWORD size, wchar_t* path) { return sys::GetCurrentDirectoryW(size, path); });
}

void ChangeFolder(const std::string& path) {
    sys::SetCurrentDirectoryW(WidePath(path).c_str()).IgnoreError();  // ignored by contract
}

std::string SystemFolder() {
    return PathFrom([](DWORD size, wchar_t* path) { return sys::GetWindowsDirectoryW(path, size); });
}

}  // namespace qv::platform
