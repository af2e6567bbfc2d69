#include "platform/FolderFiles.h"

#include <algorithm>
#include <array>

#include "platform/windows/FileTime.h"
#include "platform/windows/FolderBody.h"
#include "platform/windows/WritableScope.h"

namespace qv::platform {
namespace {

constexpr unsigned kSettable = kReadOnly | kHidden | kSystem | kArchive;

Result<HANDLE> OpenIn(const Folder& folder, const std::string& name, DWORD access, DWORD sharing, DWORD disposition) {
    return sys::CreateFileA(PathIn(folder, name).c_str(), access, sharing, nullptr, disposition,
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

Status MakeFolderIn(const Folder& folder, const std::string& name) {
    const auto made = sys::CreateDirectoryA(PathIn(folder, name).c_str(), nullptr);
    return made.error() == ERROR_ALREADY_EXISTS ? Status() : made.status();
}

Status CreateFileIn(const Folder& folder, const std::string& name, FileHandle& handle) {
    const auto file = OpenIn(folder, name, GENERIC_WRITE, 0, CREATE_NEW);
    if (file.ok()) handle = ContractHandle(file.value());
    return file.status();
}

Status RemoveFileIn(const Folder& folder, const std::string& name) {
    const std::string path = PathIn(folder, name);
    if (sys::DeleteFileA(path.c_str()).ok()) return {};
    WritableScope removed(path);
    const auto status = sys::DeleteFileA(path.c_str()).status();
    if (status.ok()) removed.Dismiss();
    return status;
}

Status MoveOverIn(const Folder& folder, const std::string& from, const std::string& to) {
    const std::string source = PathIn(folder, from), target = PathIn(folder, to);
    WritableScope replaced(target);
    const auto status = sys::MoveFileExA(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING).status();
    if (status.ok()) replaced.Dismiss();
    return status;
}

bool KeepsArchiveBit() {
    return true;
}

Status StampFile(FileHandle handle, const FileStamp& stamp) {
    FILE_BASIC_INFO info{};  // times of 0 stay
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
