#include "platform/FolderFiles.h"

#include "platform/windows/FileTime.h"
#include "platform/windows/FolderBody.h"
#include "platform/windows/WritableScope.h"

namespace qv::platform {
namespace {

Result<HANDLE> OpenIn(const Folder& folder, const std::string& name, DWORD access, DWORD sharing, DWORD disposition) {
    return sys::CreateFileW(PathIn(folder, name).c_str(), access, sharing, nullptr, disposition,
                            FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
}

}  // namespace

bool IsPlainName(std::string_view name) {
    return !name.starts_with('\\') && IsPlainWideName(WideName(name));
}

Status MakeFolderIn(const Folder& folder, const std::string& name) {
    const auto made = sys::CreateDirectoryW(PathIn(folder, name).c_str(), nullptr);
    return made.error() == ERROR_ALREADY_EXISTS ? Status() : made.status();
}

Status CreateFileIn(const Folder& folder, const std::string& name, FileHandle& handle) {
    const auto file = OpenIn(folder, name, GENERIC_WRITE, 0, CREATE_NEW);
    if (file.ok()) handle = ContractHandle(file.value());
    return file.status();
}

Status RemoveFileIn(const Folder& folder, const std::string& name) {
    const std::wstring path = PathIn(folder, name);
    if (sys::DeleteFileW(path.c_str()).ok()) return {};
    WritableScope removed(path);
    const auto status = sys::DeleteFileW(path.c_str()).status();
    if (status.ok()) removed.Dismiss();
    return status;
}

Status MoveOverIn(const Folder& folder, const std::string& from, const std::string& to) {
    const std::wstring source = PathIn(folder, from), target = PathIn(folder, to);
    WritableScope replaced(target);
    const auto status = sys::MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING).status();
    if (status.ok()) replaced.Dismiss();
    return status;
}

bool KeepsArchiveBit() {
    return true;
}

Status StampFile(FileHandle handle, const FileStamp& stamp) {
    FILE_BASIC_INFO info{};  // 0: unchanged
    if (stamp.time != -1) {
        info.CreationTime.QuadPart = TicksAt(stamp.time);
        info.LastWriteTime = info.CreationTime;
    }
    const DWORD attributes = stamp.attributes & kSettable;
    info.FileAttributes = attributes ? attributes : FILE_ATTRIBUTE_NORMAL;
    return sys::SetFileInformationByHandle(SystemHandle(handle), FileBasicInfo, &info, DWORD{sizeof info}).status();
}

Status StampFileIn(const Folder& folder, const std::string& name, const FileStamp& stamp) {
    const auto opened = OpenIn(folder, name, FILE_WRITE_ATTRIBUTES,
                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING);
    if (!opened.ok()) return opened.status();
    const UniqueHandle file(opened);
    return StampFile(ContractHandle(file.Get()), stamp);
}

}  // namespace qv::platform
