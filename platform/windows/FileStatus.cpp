#include "platform/FileStatus.h"

#include "platform/FileSearch.h"
#include "platform/Path.h"
#include "platform/windows/FileTime.h"
#include "platform/windows/UniqueHandle.h"
#include "platform/windows/WritableScope.h"

namespace qv::platform {
namespace {

constexpr unsigned kKnown = kReadOnly | kHidden | kSystem | kDirectory | kArchive;
constexpr unsigned kSettable = kReadOnly | kHidden | kSystem | kArchive;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Both of the system's records name these members alike.
template <class Data>
FileInfo InfoOf(const Data& data) {
    FileInfo info;
    info.created = SecondsOf(data.ftCreationTime);
    info.modified = SecondsOf(data.ftLastWriteTime);
    info.accessed = SecondsOf(data.ftLastAccessTime);
    info.attributes = data.dwFileAttributes & kKnown;
    info.isRegular = !(info.attributes & kDirectory);
    if (info.isRegular) info.size = Joined(data.nFileSizeHigh, data.nFileSizeLow);
    return info;
}

bool IsVolumeRoot(const std::string& full) {
    return full.size() == 3 && full[1] == ':' && (full[2] == '\\' || full[2] == '/');
}

Result<HANDLE> OpenAnything(const std::string& native, DWORD access) {
    return sys::CreateFileA(native.c_str(), access, kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                            nullptr);
}

Status ChangeTime(const std::string& native, std::int64_t modified) {
    const auto opened = OpenAnything(native, FILE_WRITE_ATTRIBUTES);
    if (!opened.ok()) return opened.status();
    const UniqueHandle file(opened);
    const FILETIME time = FileTimeAt(modified);
    return sys::SetFileTime(file.Get(), nullptr, nullptr, &time).status();
}

Status ChangeAttributes(const std::string& native, unsigned attributes) {
    const DWORD changed = attributes & kSettable;
    return sys::SetFileAttributesA(native.c_str(), changed ? changed : FILE_ATTRIBUTE_NORMAL).status();
}

/// Which file it is, on which volume.
bool Identify(const char* path, BY_HANDLE_FILE_INFORMATION& data) {
    const UniqueHandle file(OpenAnything(NativePath(path), 0));
    return file && sys::GetFileInformationByHandle(file.Get(), &data).ok();
}

}  // namespace

Status StatusOf(const char* path, FileInfo& info) {
    if (IsVolumeRoot(FullPath(path))) return Status::OfError(ERROR_BAD_PATHNAME);
    WIN32_FILE_ATTRIBUTE_DATA data;
    const auto asked = sys::GetFileAttributesExA(NativePath(path).c_str(), GetFileExInfoStandard, &data);
    if (asked.ok()) info = InfoOf(data);
    return asked.statusAt(path);
}

Status StatusOf(FileHandle handle, const char*, FileInfo& info) {
    BY_HANDLE_FILE_INFORMATION data;
    const auto asked = sys::GetFileInformationByHandle(SystemHandle(handle), &data);
    if (asked.ok()) info = InfoOf(data);
    return asked.status();
}

Status ChangeStatus(const char* path, std::int64_t modified, unsigned attributes) {
    const std::string native = NativePath(path);
    FileInfo now;
    if (const Status known = StatusOf(path, now); !known.ok()) return known;
    if (modified != -1 && modified != now.modified) {
        WritableScope writable(native, now.attributes);  // a read-only file takes no time
        if (const Status stamped = ChangeTime(native, modified); !stamped.ok()) return stamped;
        writable.Dismiss();
    }
    return ChangeAttributes(native, attributes);
}

Status MakeFile(const char* path) {
    const auto made = sys::CreateFileA(NativePath(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                       FILE_ATTRIBUTE_NORMAL, nullptr);
    return made.ok() ? UniqueHandle(made).Close() : made.statusAt(path);
}

Status RemoveFile(const char* path) {
    return sys::DeleteFileA(NativePath(path).c_str()).statusAt(path);
}

Status RenameFile(const char* from, const char* to) {
    return sys::MoveFileExA(NativePath(from).c_str(), NativePath(to).c_str(), MOVEFILE_COPY_ALLOWED).statusAt(from);
}

Status CreateFolder(const char* path) {
    const std::string native = NativePath(path);
    const auto created = sys::CreateDirectoryA(native.c_str(), nullptr);
    if (created.ok() || created.error() == ERROR_ALREADY_EXISTS) return {};
    // The root of a volume exists, but the system refuses it for another reason.
    const auto attributes = sys::GetFileAttributesA(native.c_str());
    const bool isFolder = attributes.ok() && (attributes.value() & FILE_ATTRIBUTE_DIRECTORY);
    return isFolder ? Status() : created.statusAt(path);
}

Status RemoveFolder(const char* path) {
    return sys::RemoveDirectoryA(NativePath(path).c_str()).statusAt(path);
}

bool IsFolderLink(const char* path) {
    std::string name = path;
    while (name.size() > 1 && (name.back() == '\\' || name.back() == '/')) name.pop_back();
    FileSearch search;
    FoundEntry entry;
    return search.Start(name.c_str()).ok() && search.Next(entry) && entry.IsFolder() && entry.IsLink();
}

std::string LinkTarget(const char* path) {
    constexpr std::string_view kExtended = "\\\\?\\";
    const std::string native = NativePath(path);
    const auto attributes = sys::GetFileAttributesA(native.c_str());
    if (!attributes.ok() || !(attributes.value() & FILE_ATTRIBUTE_REPARSE_POINT)) return path;
    const UniqueHandle file(sys::CreateFileA(native.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                             nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    std::string target(32768, '\0');
    const auto size = sys::GetFinalPathNameByHandleA(file.Get(), target.data(), static_cast<DWORD>(target.size()),
                                                     DWORD{FILE_NAME_NORMALIZED});
    if (!file || !size.ok()) return path;
    target.resize(size.value());
    return target.starts_with(kExtended) ? target.substr(kExtended.size()) : target;
}

bool IsOwnFile(const char* path) {
    const auto attributes = sys::GetFileAttributesA(NativePath(path).c_str());
    return attributes.ok() && !(attributes.value() & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT));
}

bool IsSame(const char* a, const char* b) {
    BY_HANDLE_FILE_INFORMATION first, second;
    return Identify(a, first) && Identify(b, second) && first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
           first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

}  // namespace qv::platform
