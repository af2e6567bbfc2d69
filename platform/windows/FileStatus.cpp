#include "platform/FileStatus.h"

#include <windows.h>

#include "platform/FileSearch.h"
#include "platform/Path.h"
#include "platform/windows/Owned.h"

namespace qv::platform {
namespace {

constexpr unsigned kKnown = kReadOnly | kHidden | kSystem | kDirectory | kArchive;
constexpr unsigned kSettable = kReadOnly | kHidden | kSystem | kArchive;
constexpr std::uint64_t kTicksASecond = 10'000'000, kTicksUntil1970 = 116'444'736'000'000'000;

std::uint64_t Joined(DWORD high, DWORD low) {
    return (std::uint64_t{high} << 32) | low;
}

std::int64_t Seconds(const FILETIME& time) {
    const std::uint64_t ticks = Joined(time.dwHighDateTime, time.dwLowDateTime);
    if (ticks == 0) return -1;
    const auto since1970 = static_cast<std::int64_t>(ticks - kTicksUntil1970);
    return since1970 / static_cast<std::int64_t>(kTicksASecond);
}

FILETIME Time(std::int64_t seconds) {
    const std::uint64_t ticks = static_cast<std::uint64_t>(seconds) * kTicksASecond + kTicksUntil1970;
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

/// Both of the system's records name these members alike.
template <class Data>
FileInfo InfoOf(const Data& data) {
    FileInfo info;
    info.created = Seconds(data.ftCreationTime);
    info.modified = Seconds(data.ftLastWriteTime);
    info.accessed = Seconds(data.ftLastAccessTime);
    info.attributes = data.dwFileAttributes & kKnown;
    if (!(info.attributes & kDirectory)) info.size = Joined(data.nFileSizeHigh, data.nFileSizeLow);
    return info;
}

bool IsVolumeRoot(const std::string& full) {
    return full.size() == 3 && full[1] == ':' && (full[2] == '\\' || full[2] == '/');
}

FileFailure ChangeTime(const std::string& native, std::int64_t modified) {
    const HANDLE file =
        ::CreateFileA(native.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) return LastFailure();
    const FILETIME time = Time(modified);
    const FileFailure failure = ::SetFileTime(file, nullptr, nullptr, &time) ? FileFailure{} : LastFailure();
    ::CloseHandle(file);
    return failure;
}

FileFailure ChangeAttributes(const std::string& native, unsigned attributes) {
    const DWORD changed = attributes & kSettable;
    return ::SetFileAttributesA(native.c_str(), changed ? changed : FILE_ATTRIBUTE_NORMAL) ? FileFailure{}
                                                                                           : LastFailure();
}

/// Which file it is, on which volume.
bool Identify(const char* path, BY_HANDLE_FILE_INFORMATION& data) {
    constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const Owned file(::CreateFileA(path, 0, kShare, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return file && ::GetFileInformationByHandle(file.Get(), &data);
}

}  // namespace

FileFailure StatusOf(const char* path, FileInfo& info) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (IsVolumeRoot(FullPath(path))) return {FileCause::BadPath, ERROR_BAD_PATHNAME};
    if (!::GetFileAttributesExA(NativePath(path).c_str(), GetFileExInfoStandard, &data)) return LastFailureAt(path);
    info = InfoOf(data);
    return {};
}

FileFailure StatusOf(FileHandle handle, const char*, FileInfo& info) {
    BY_HANDLE_FILE_INFORMATION data;
    if (!::GetFileInformationByHandle(reinterpret_cast<HANDLE>(handle), &data)) return LastFailure();
    info = InfoOf(data);
    return {};
}

FileFailure ChangeStatus(const char* path, std::int64_t modified, unsigned attributes) {
    const std::string native = NativePath(path);
    FileInfo now;
    if (const FileFailure failure = StatusOf(path, now)) return failure;
    const bool stamp = modified != -1 && modified != now.modified;
    // A read-only file takes no time: it loses that attribute first.
    if (stamp && (now.attributes & kReadOnly))
        if (const FileFailure failure = ChangeAttributes(native, now.attributes & ~kReadOnly)) return failure;
    if (stamp)
        if (const FileFailure failure = ChangeTime(native, modified)) return failure;
    return ChangeAttributes(native, attributes);
}

FileFailure RemoveFile(const char* path) {
    return ::DeleteFileA(NativePath(path).c_str()) ? FileFailure{} : LastFailureAt(path);
}

FileFailure RenameFile(const char* from, const char* to) {
    return ::MoveFileA(NativePath(from).c_str(), NativePath(to).c_str()) ? FileFailure{} : LastFailureAt(from);
}

FileFailure CreateFolder(const char* path) {
    if (::CreateDirectoryA(NativePath(path).c_str(), nullptr)) return {};
    const FileFailure failure = LastFailureAt(path);
    // The root of a volume exists, but the system refuses it for another reason.
    const DWORD attributes = ::GetFileAttributesA(path);
    const bool folder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    return folder || failure.error == ERROR_ALREADY_EXISTS ? FileFailure{} : failure;
}

FileFailure RemoveFolder(const char* path) {
    return ::RemoveDirectoryA(NativePath(path).c_str()) ? FileFailure{} : LastFailureAt(path);
}

bool IsFolderLink(const char* path) {
    std::string name = path;
    while (name.size() > 1 && (name.back() == '\\' || name.back() == '/')) name.pop_back();
    FileSearch search;
    FoundEntry entry;
    return !search.Start(name.c_str()) && search.Next(entry) && entry.IsFolder() && entry.IsLink();
}

bool IsSame(const char* a, const char* b) {
    BY_HANDLE_FILE_INFORMATION first, second;
    return Identify(a, first) && Identify(b, second) && first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
           first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

}  // namespace qv::platform
