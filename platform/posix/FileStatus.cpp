#include "platform/FileStatus.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/Path.h"

namespace qv::platform {
namespace {

constexpr mode_t kAllWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

bool HasLeadingPoint(const std::string& native) {
    const auto end = native.find_last_not_of('/');
    const auto slash = native.find_last_of('/', end);
    const std::string name = native.substr(slash == native.npos ? 0 : slash + 1, end - slash);
    return name.starts_with('.') && name != "." && name != "..";
}

FileInfo InfoOf(const struct statx& status, const std::string& native) {
    FileInfo info;
    info.created = status.stx_mask & STATX_BTIME ? status.stx_btime.tv_sec : status.stx_ctime.tv_sec;
    info.modified = status.stx_mtime.tv_sec;
    info.accessed = status.stx_atime.tv_sec;
    if (S_ISDIR(status.stx_mode))
        info.attributes |= kDirectory;
    else
        info.size = status.stx_size;
    if (!(status.stx_mode & S_IWUSR)) info.attributes |= kReadOnly;
    if (HasLeadingPoint(native)) info.attributes |= kHidden;
    return info;
}

FileFailure Query(int folder, const char* name, int flags, const char* path, FileInfo& info) {
    struct statx status;
    if (::statx(folder, name, flags, STATX_BASIC_STATS | STATX_BTIME, &status)) return LastFailureAt(path);
    info = InfoOf(status, NativePath(path));
    return {};
}

FileFailure ChangeMode(const std::string& native, mode_t mode, bool readOnly) {
    if (readOnly == !(mode & S_IWUSR)) return {};
    const mode_t changed = readOnly ? mode & ~kAllWriteBits : mode | S_IWUSR;
    return ::chmod(native.c_str(), changed & 07777) ? LastFailure() : FileFailure{};
}

// Without RENAME_NOREPLACE (network file systems): a second name for a file refuses to replace too.
int RenameInSteps(const char* from, const char* to) {
    struct stat status;
    if (!::lstat(to, &status)) return errno = EEXIST, -1;
    if (::lstat(from, &status)) return -1;
    if (S_ISDIR(status.st_mode)) return ::rename(from, to);
    if (!::linkat(AT_FDCWD, from, AT_FDCWD, to, 0)) return ::unlink(from);
    return errno == EEXIST ? -1 : ::rename(from, to);
}

// With it, a link would be followed.
std::string WithoutFinalSeparator(const char* path) {
    std::string native = NativePath(path);
    while (native.size() > 1 && native.back() == '/') native.pop_back();
    return native;
}

}  // namespace

FileFailure StatusOf(const char* path, FileInfo& info) {
    return Query(AT_FDCWD, NativePath(path).c_str(), 0, path, info);
}

FileFailure StatusOf(FileHandle handle, const char* path, FileInfo& info) {
    return Query(static_cast<int>(handle), "", AT_EMPTY_PATH, path, info);
}

FileFailure ChangeStatus(const char* path, std::int64_t modified, unsigned attributes) {
    const std::string native = NativePath(path);
    struct stat status;
    if (::stat(native.c_str(), &status)) return LastFailureAt(path);
    if (modified != -1 && modified != status.st_mtime) {
        const timespec times[2] = {{0, UTIME_OMIT}, {static_cast<time_t>(modified), 0}};
        if (::utimensat(AT_FDCWD, native.c_str(), times, 0)) return LastFailure();
    }
    return ChangeMode(native, status.st_mode, attributes & kReadOnly);
}

FileFailure RemoveFile(const char* path) {
    return ::unlink(NativePath(path).c_str()) ? LastFailureAt(path) : FileFailure{};
}

FileFailure RenameFile(const char* from, const char* to) {
    const std::string source = NativePath(from), target = NativePath(to);
    if (!::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE)) return {};
    const bool unknown = errno == EINVAL || errno == ENOSYS;
    if (unknown && !RenameInSteps(source.c_str(), target.c_str())) return {};
    return errno == ENOENT ? LastFailureAt(to) : LastFailure();
}

FileFailure CreateFolder(const char* path) {
    return ::mkdir(NativePath(path).c_str(), 0777) && errno != EEXIST ? LastFailureAt(path) : FileFailure{};
}

FileFailure RemoveFolder(const char* path) {
    const std::string native = WithoutFinalSeparator(path);
    const bool removed =
        !::rmdir(native.c_str()) || (errno == ENOTDIR && IsFolderLink(path) && !::unlink(native.c_str()));
    return removed ? FileFailure{} : LastFailureAt(path);
}

bool IsFolderLink(const char* path) {
    const std::string native = WithoutFinalSeparator(path);
    struct stat status;
    return !::lstat(native.c_str(), &status) && S_ISLNK(status.st_mode) && !::stat(native.c_str(), &status) &&
           S_ISDIR(status.st_mode);
}

bool IsSame(const char* a, const char* b) {
    struct stat first, second;
    if (::stat(NativePath(a).c_str(), &first) || ::stat(NativePath(b).c_str(), &second)) return false;
    return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace qv::platform
