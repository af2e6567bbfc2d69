#include "platform/FileStatus.h"

#include "platform/FolderFiles.h"
#include "platform/windows/FileTime.h"
#include "platform/windows/FindData.h"
#include "platform/windows/UniqueHandle.h"
#include "platform/windows/WritableScope.h"

namespace qv::platform {
namespace {

constexpr unsigned kKnown = kReadOnly | kHidden | kSystem | kDirectory | kArchive;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Both system records use the same names for these members.
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

bool IsVolumeRoot(const std::wstring& path) {
    const std::wstring full = WideFullPath(path);
    return full.size() == 3 && full[1] == L':' && full[2] == L'\\';
}

Result<HANDLE> OpenAnything(const std::wstring& path, DWORD access) {
    return sys::CreateFileW(path.c_str(), access, kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                            nullptr);
}

Status ChangeTime(const std::wstring& path, std::int64_t modified) {
    const auto opened = OpenAnything(path, FILE_WRITE_ATTRIBUTES);
    if (!opened.ok()) return opened.status();
    const UniqueHandle file(opened);
    const FILETIME time = FileTimeAt(modified);
    return sys::SetFileTime(file.Get(), nullptr, nullptr, &time).status();
}

/// The attributes of a link are its own: those of its target are changed by handle.
Status ChangeAttributes(const std::wstring& path, unsigned attributes) {
    if (!IsLinkAt(path)) {
        const DWORD changed = attributes & kSettable;
        return sys::SetFileAttributesW(path.c_str(), changed ? changed : FILE_ATTRIBUTE_NORMAL).status();
    }
    const auto opened = OpenAnything(path, FILE_WRITE_ATTRIBUTES);
    if (!opened.ok()) return opened.status();
    const UniqueHandle file(opened);
    return StampFile(ContractHandle(file.Get()), {.time = -1, .attributes = attributes});
}

Status StatusOfTarget(const std::wstring& path, FileInfo& info) {
    const auto opened = OpenAnything(path, FILE_READ_ATTRIBUTES);
    if (!opened.ok()) return opened.status();
    const UniqueHandle file(opened);
    return StatusOf(ContractHandle(file.Get()), "", info);
}

Status StatusAt(const std::wstring& path, FileInfo& info) {
    if (IsVolumeRoot(path)) return Status::OfError(ERROR_BAD_PATHNAME);
    WIN32_FILE_ATTRIBUTE_DATA data;
    const auto asked = sys::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data);
    if (asked.ok() && data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT && IsLinkAt(path))
        return StatusOfTarget(path, info);
    if (asked.ok()) info = InfoOf(data);
    return asked.status();
}

/// Identifies the file and its volume.
bool Identify(const char* path, BY_HANDLE_FILE_INFORMATION& data) {
    const UniqueHandle file(OpenAnything(WidePath(path), 0));
    return file && sys::GetFileInformationByHandle(file.Get(), &data).ok();
}

}  // namespace

Status StatusOf(const char* path, FileInfo& info) {
    return StatusAt(WidePath(path), info);
}

Status StatusOf(FileHandle handle, const char*, FileInfo& info) {
    BY_HANDLE_FILE_INFORMATION data;
    const auto asked = sys::GetFileInformationByHandle(SystemHandle(handle), &data);
    if (asked.ok()) info = InfoOf(data);
    return asked.status();
}

Status ChangeStatus(const char* path, std::int64_t modified, unsigned attributes) {
    const std::wstring wide = WidePath(path);
    FileInfo now;
    if (const Status known = StatusAt(wide, now); !known.ok()) return known;
    if (modified != -1 && modified != now.modified) {
        // The time of a read-only file cannot be set. The scope would change a link itself.
        WritableScope writable(wide, IsLinkAt(wide) ? 0 : now.attributes);
        if (const Status stamped = ChangeTime(wide, modified); !stamped.ok()) return stamped;
        writable.Dismiss();
    }
    return ChangeAttributes(wide, attributes);
}

Status MakeFile(const char* path) {
    const auto made =
        sys::CreateFileW(WidePath(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    return made.ok() ? UniqueHandle(made).Close() : made.statusAt(path);
}

Status RemoveFile(const char* path) {
    return sys::DeleteFileW(WidePath(path).c_str()).statusAt(path);
}

Status RenameFile(const char* from, const char* to) {
    return sys::MoveFileExW(WidePath(from).c_str(), WidePath(to).c_str(), MOVEFILE_COPY_ALLOWED).statusAt(from);
}

Status CreateFolder(const char* path) {
    const std::wstring wide = WidePath(path);
    const auto created = sys::CreateDirectoryW(wide.c_str(), nullptr);
    if (created.ok() || created.error() == ERROR_ALREADY_EXISTS) return {};
    // The root of a volume exists, but the system reports another error for it.
    const auto attributes = sys::GetFileAttributesW(wide.c_str());
    const bool isFolder = attributes.ok() && (attributes.value() & FILE_ATTRIBUTE_DIRECTORY);
    return isFolder ? Status() : created.statusAt(path);
}

Status RemoveFolder(const char* path) {
    return sys::RemoveDirectoryW(WidePath(path).c_str()).statusAt(path);
}

bool IsFolderLinkAt(const std::wstring& path) {
    WIN32_FIND_DATAW data;
    const auto found = sys::FindFirstFileW(path.c_str(), &data);
    const UniqueSearch search(found);
    return found.ok() && (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && (TagOf(data) & kStandsForAnotherPlace);
}

Result<DWORD> LinkAttributesAt(std::wstring path) {
    const auto attributes = sys::GetFileAttributesW(path.c_str());
    if (!attributes.ok() || !(attributes.value() & FILE_ATTRIBUTE_REPARSE_POINT)) return attributes;
    while (path.ends_with(L'\\')) path.pop_back();
    WIN32_FIND_DATAW data;
    const auto found = sys::FindFirstFileW(path.c_str(), &data);
    const UniqueSearch search(found);
    const bool isLink = !found.ok() || (TagOf(data) & kStandsForAnotherPlace);  // a link if its tag is not known
    return isLink ? attributes.value() : attributes.value() & ~DWORD{FILE_ATTRIBUTE_REPARSE_POINT};
}

bool IsLinkAt(const std::wstring& path) {
    const auto attributes = LinkAttributesAt(path);
    return attributes.ok() && (attributes.value() & FILE_ATTRIBUTE_REPARSE_POINT);
}

bool IsFolderLink(const char* path) {
    std::wstring name = WidePath(path);
    while (name.size() > 1 && (name.back() == L'\\' || name.back() == L'/')) name.pop_back();
    return IsFolderLinkAt(name);
}

std::string LinkTarget(const char* path) {
    const std::wstring wide = WidePath(path);
    if (!IsLinkAt(wide)) return path;
    const UniqueHandle file(OpenAnything(wide, 0));
    std::wstring target(32768, L'\0');
    const auto size = sys::GetFinalPathNameByHandleW(file.Get(), target.data(), static_cast<DWORD>(target.size()),
                                                     DWORD{FILE_NAME_NORMALIZED});
    if (!file || !size.ok()) return path;
    target.resize(size.value());
    return ReachablePath(target).value_or(path);
}

bool IsOwnFile(const char* path) {
    const auto attributes = LinkAttributesAt(WidePath(path));
    return attributes.ok() && !(attributes.value() & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT));
}

bool IsSame(const char* a, const char* b) {
    BY_HANDLE_FILE_INFORMATION first, second;
    return Identify(a, first) && Identify(b, second) && first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
           first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

}  // namespace qv::platform
