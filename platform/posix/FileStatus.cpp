#include "platform/FileStatus.h"

#include <cerrno>
#include <climits>
#include <string>

#include "platform/Path.h"
#include "platform/posix/RenameNoReplace.h"
#include "platform/posix/SameFile.h"
#include "platform/posix/attributes/ReadOnlyMode.h"

namespace qv::platform {
namespace {

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
    info.isRegular = S_ISREG(status.stx_mode);
    return info;
}

Status Query(int folder, const char* name, int flags, const char* path, FileInfo& info) {
    struct statx status;
    const auto asked = sys::statx(folder, name, flags, STATX_BASIC_STATS | STATX_BTIME, &status);
    if (!asked.ok()) return asked.statusAt(path);
    info = InfoOf(status, NativePath(path));
    return {};
}

Status ChangeMode(const std::string& native, mode_t mode, bool readOnly) {
    if (readOnly == !(mode & S_IWUSR)) return {};
    const mode_t changed = ReadOnlyMode(mode, readOnly);
    return sys::fchmodat(AT_FDCWD, native.c_str(), changed & 07777, 0).status();
}

// With a trailing separator a link would be followed.
std::string WithoutFinalSeparator(const char* path) {
    std::string native = NativePath(path);
    while (native.size() > 1 && native.back() == '/') native.pop_back();
    return native;
}

bool IsOfType(const std::string& native, int flags, mode_t type) {
    struct stat status;
    return sys::fstatat(AT_FDCWD, native.c_str(), &status, flags).ok() && (status.st_mode & S_IFMT) == type;
}

}  // namespace

Status StatusOf(const char* path, FileInfo& info) {
    return Query(AT_FDCWD, NativePath(path).c_str(), 0, path, info);
}

Status StatusOf(FileHandle handle, const char* path, FileInfo& info) {
    return Query(static_cast<int>(handle), "", AT_EMPTY_PATH, path, info);
}

Status ChangeStatus(const char* path, std::int64_t modified, unsigned attributes) {
    const std::string native = NativePath(path);
    struct stat status;
    const auto asked = sys::fstatat(AT_FDCWD, native.c_str(), &status, 0);
    if (!asked.ok()) return asked.statusAt(path);
    if (modified != -1 && modified != status.st_mtime) {
        const timespec times[2] = {{0, UTIME_OMIT}, {static_cast<time_t>(modified), 0}};
        const auto changed = sys::utimensat(AT_FDCWD, native.c_str(), times, 0);
        if (!changed.ok()) return changed.status();
    }
    return ChangeMode(native, status.st_mode, attributes & kReadOnly);
}

Status MakeFile(const char* path) {
    constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    const auto made = sys::openat(AT_FDCWD, NativePath(path).c_str(), kFlags, 0666);
    return made.ok() ? UniqueFd(made).Close() : made.statusAt(path);
}

Status RemoveFile(const char* path) {
    return sys::unlinkat(AT_FDCWD, NativePath(path).c_str(), 0).statusAt(path);
}

Status RenameFile(const char* from, const char* to) {
    const std::string source = NativePath(from), target = NativePath(to);
    return RenameNoReplace(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str()).statusAt(to);
}

Status CreateFolder(const char* path) {
    const auto made = sys::mkdirat(AT_FDCWD, NativePath(path).c_str(), 0777);
    return made.error() == EEXIST ? Status() : made.statusAt(path);
}

Status RemoveFolder(const char* path) {
    const std::string native = WithoutFinalSeparator(path);
    const auto removed = sys::unlinkat(AT_FDCWD, native.c_str(), AT_REMOVEDIR);
    const bool isLink = removed.error() == ENOTDIR && IsFolderLink(path);
    return (isLink ? sys::unlinkat(AT_FDCWD, native.c_str(), 0) : removed).statusAt(path);
}

bool IsFolderLink(const char* path) {
    const std::string native = WithoutFinalSeparator(path);
    return IsOfType(native, AT_SYMLINK_NOFOLLOW, S_IFLNK) && IsOfType(native, 0, S_IFDIR);
}

std::string LinkTarget(const char* path) {
    constexpr int kMostLinks = 40;
    std::string native = NativePath(path);
    for (int links = 0; links < kMostLinks; ++links) {
        char leads[PATH_MAX];
        const auto size = sys::readlink(native.c_str(), leads, sizeof leads);
        if (!size.ok()) break;
        const std::string_view next(leads, static_cast<std::size_t>(size.value()));
        const auto slash = native.rfind('/');
        const bool within = !next.starts_with('/') && slash != native.npos;
        native.replace(0, native.npos, (within ? native.substr(0, slash + 1) : "").append(next));
    }
    return LibraryPath(native);
}

bool IsOwnFile(const char* path) {
    struct stat status;
    const auto asked = sys::fstatat(AT_FDCWD, NativePath(path).c_str(), &status, AT_SYMLINK_NOFOLLOW);
    return asked.ok() && S_ISREG(status.st_mode) && status.st_uid == ::geteuid();
}

bool IsSame(const char* a, const char* b) {
    struct stat first;
    return sys::fstatat(AT_FDCWD, NativePath(a).c_str(), &first, 0).ok() &&
           LeadsTo(AT_FDCWD, NativePath(b).c_str(), first);
}

}  // namespace qv::platform
