#include "platform/FolderFiles.h"

#include <windows.h>

#include <algorithm>
#include <array>

namespace qv::platform {
namespace {

constexpr unsigned kSettable = kReadOnly | kHidden | kSystem | kArchive;
constexpr std::int64_t kTicksASecond = 10'000'000, kTicksUntil1970 = 116'444'736'000'000'000;

FileFailure Checked(BOOL succeeded) {
    return succeeded ? FileFailure{} : LastFailure();
}

HANDLE OpenIn(const Folder& folder, const std::string& name, DWORD access, DWORD sharing, DWORD disposition) {
    return ::CreateFileA(folder.PathOf(name).c_str(), access, sharing, nullptr, disposition,
                         FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
}

char Upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// What stands before the first point, without final blanks, decides.
bool IsDevice(std::string_view name) {
    constexpr std::array<std::string_view, 7> kDevices = {"CON", "PRN", "AUX", "NUL", "CLOCK$", "CONIN$", "CONOUT$"};
    std::string base(name.substr(0, name.find('.')));
    while (!base.empty() && base.back() == ' ') base.pop_back();
    std::transform(base.begin(), base.end(), base.begin(), &Upper);
    if (std::find(kDevices.begin(), kDevices.end(), base) != kDevices.end()) return true;
    if (!base.starts_with("COM") && !base.starts_with("LPT")) return false;
    // One digit; the raised ones count in the Latin code pages and in UTF-8.
    const std::string_view number = std::string_view(base).substr(3);
    if (number.size() == 1)
        return (number[0] >= '0' && number[0] <= '9') || static_cast<unsigned char>(number[0]) > 127;
    return number.size() == 2 && static_cast<unsigned char>(number[0]) > 127;
}

}  // namespace

bool IsPlainName(std::string_view name) {
    if (name.empty() || name.back() == '.' || name.back() == ' ') return false;
    const auto isRefused = [](char c) {
        return static_cast<unsigned char>(c) < 32 || std::string_view("<>:\"/\\|?*").find(c) != std::string_view::npos;
    };
    return std::none_of(name.begin(), name.end(), isRefused) && !IsDevice(name);
}

FileFailure MakeFolderIn(const Folder& folder, const std::string& name) {
    if (::CreateDirectoryA(folder.PathOf(name).c_str(), nullptr)) return {};
    return ::GetLastError() == ERROR_ALREADY_EXISTS ? FileFailure{} : LastFailure();
}

FileFailure CreateFileIn(const Folder& folder, const std::string& name, FileHandle& handle) {
    const HANDLE file = OpenIn(folder, name, GENERIC_WRITE, 0, CREATE_NEW);
    if (file == INVALID_HANDLE_VALUE) return LastFailure();
    handle = reinterpret_cast<FileHandle>(file);
    return {};
}

FileFailure RemoveFileIn(const Folder& folder, const std::string& name) {
    const std::string path = folder.PathOf(name);
    if (::DeleteFileA(path.c_str())) return {};
    ::SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    return Checked(::DeleteFileA(path.c_str()));
}

FileFailure MoveOverIn(const Folder& folder, const std::string& from, const std::string& to) {
    const std::string source = folder.PathOf(from), target = folder.PathOf(to);
    const DWORD attributes = ::GetFileAttributesA(target.c_str());
    const bool readOnlyFile = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) &&
                              !(attributes & FILE_ATTRIBUTE_DIRECTORY);
    if (readOnlyFile) ::SetFileAttributesA(target.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    return Checked(::MoveFileExA(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING));
}

bool KeepsArchiveBit() {
    return true;
}

FileFailure StampFile(FileHandle handle, const FileStamp& stamp) {
    FILE_BASIC_INFO info{};  // times of 0 stay
    if (stamp.time != -1) {
        info.CreationTime.QuadPart = stamp.time * kTicksASecond + kTicksUntil1970;
        info.LastWriteTime = info.CreationTime;
    }
    const DWORD attributes = stamp.attributes & kSettable;
    info.FileAttributes = attributes ? attributes : FILE_ATTRIBUTE_NORMAL;
    return Checked(::SetFileInformationByHandle(reinterpret_cast<HANDLE>(handle), FileBasicInfo, &info, sizeof info));
}

FileFailure StampFileIn(const Folder& folder, const std::string& name, const FileStamp& stamp) {
    const HANDLE file = OpenIn(folder, name, FILE_WRITE_ATTRIBUTES,
                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING);
    if (file == INVALID_HANDLE_VALUE) return LastFailure();
    const FileFailure failure = StampFile(reinterpret_cast<FileHandle>(file), stamp);
    ::CloseHandle(file);
    return failure;
}

}  // namespace qv::platform
