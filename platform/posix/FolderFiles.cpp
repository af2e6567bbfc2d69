#include "platform/FolderFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/posix/Owned.h"

namespace qv::platform {
namespace {

constexpr mode_t kAllWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

int Descriptor(const Folder& folder) {
    return static_cast<int>(folder.Handle());
}

FileFailure Checked(int result) {
    return result == -1 ? LastFailure() : FileFailure{};
}

int OpenIn(const Folder& folder, const std::string& name, int flags) {
    int file = -1;
    do file = ::openat(Descriptor(folder), name.c_str(), flags | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666);
    while (file == -1 && errno == EINTR);
    return file;
}

}  // namespace

bool IsPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\\\0", 3)) == name.npos;
}

FileFailure MakeFolderIn(const Folder& folder, const std::string& name) {
    return ::mkdirat(Descriptor(folder), name.c_str(), 0777) && errno != EEXIST ? LastFailure() : FileFailure{};
}

FileFailure CreateFileIn(const Folder& folder, const std::string& name, FileHandle& handle) {
    const int file = OpenIn(folder, name, O_WRONLY | O_CREAT | O_EXCL);
    if (file == -1) return LastFailure();
    handle = file;
    return {};
}

FileFailure RemoveFileIn(const Folder& folder, const std::string& name) {
    return Checked(::unlinkat(Descriptor(folder), name.c_str(), 0));
}

FileFailure MoveOverIn(const Folder& folder, const std::string& from, const std::string& to) {
    return Checked(::renameat(Descriptor(folder), from.c_str(), Descriptor(folder), to.c_str()));
}

bool KeepsArchiveBit() {
    return false;
}

FileFailure StampFile(FileHandle handle, const FileStamp& stamp) {
    const int file = static_cast<int>(handle);
    struct stat status;
    if (::fstat(file, &status)) return LastFailure();
    const timespec times[2] = {{0, UTIME_OMIT}, {static_cast<time_t>(stamp.time), 0}};
    if (stamp.time != -1 && ::futimens(file, times)) return LastFailure();
    const bool readOnly = stamp.attributes & kReadOnly;
    const mode_t mode = readOnly ? status.st_mode & ~kAllWriteBits : status.st_mode | S_IWUSR;
    return mode == status.st_mode ? FileFailure{} : Checked(::fchmod(file, mode & 07777));
}

FileFailure StampFileIn(const Folder& folder, const std::string& name, const FileStamp& stamp) {
    const Owned file(OpenIn(folder, name, O_RDONLY));
    return file ? StampFile(file.Get(), stamp) : LastFailure();
}

}  // namespace qv::platform
