#include "platform/FolderFiles.h"

#include <cerrno>

#include "platform/posix/FolderBody.h"
#include "platform/posix/attributes/ReadOnlyMode.h"

namespace qv::platform {
namespace {

Result<int> OpenIn(const Folder& folder, const std::string& name, int flags) {
    constexpr mode_t kNewFile = 0666;
    flags |= O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    return sys::openat(DescriptorOf(folder), name.c_str(), flags, kNewFile);
}

}  // namespace

bool IsPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find_first_of(std::string_view("/\0", 2)) == name.npos;
}

Status MakeFolderIn(const Folder& folder, const std::string& name) {
    const auto made = sys::mkdirat(DescriptorOf(folder), name.c_str(), 0777);
    return made.error() == EEXIST ? Status() : made.status();
}

Status CreateFileIn(const Folder& folder, const std::string& name, FileHandle& handle) {
    const auto file = OpenIn(folder, name, O_WRONLY | O_CREAT | O_EXCL);
    if (file.ok()) handle = file.value();
    return file.status();
}

Status RemoveFileIn(const Folder& folder, const std::string& name) {
    return sys::unlinkat(DescriptorOf(folder), name.c_str(), 0).status();
}

Status MoveOverIn(const Folder& folder, const std::string& from, const std::string& to) {
    return sys::renameat(DescriptorOf(folder), from.c_str(), DescriptorOf(folder), to.c_str()).status();
}

bool KeepsArchiveBit() {
    return false;
}

Status StampFile(FileHandle handle, const FileStamp& stamp) {
    const int file = static_cast<int>(handle);
    struct stat status;
    if (const auto asked = sys::fstat(file, &status); !asked.ok()) return asked.status();
    const timespec times[2] = {{0, UTIME_OMIT}, {static_cast<time_t>(stamp.time), 0}};
    if (stamp.time != -1)
        if (const auto set = sys::futimens(file, times); !set.ok()) return set.status();
    const bool readOnly = stamp.attributes & kReadOnly;
    const mode_t mode = ReadOnlyMode(status.st_mode, readOnly);
    return mode == status.st_mode ? Status() : sys::fchmod(file, mode & 07777).status();
}

Status StampFileIn(const Folder& folder, const std::string& name, const FileStamp& stamp) {
    const auto opened = OpenIn(folder, name, O_RDONLY);
    if (!opened.ok()) return opened.status();
    const UniqueFd file(opened);
    return StampFile(file.Get(), stamp);
}

}  // namespace qv::platform
