#pragma once

#include "platform/posix/UniqueFd.h"

namespace qv::platform {

/// What two names of one file have in common, and two files that exist at the same time never have.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;

    FileIdentity() = default;
    explicit FileIdentity(const struct stat& status) : device(status.st_dev), inode(status.st_ino) {}

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

inline bool IsSameFile(const struct stat& a, const struct stat& b) {
    return FileIdentity(a) == FileIdentity(b);
}

/// Whether a name, seen from a folder, leads to the file right now, as far as this machine knows: network file systems
/// answer from a cache. `flags` are those of fstatat.
inline bool LeadsTo(int folder, const char* name, const struct stat& file, int flags = 0) {
    struct stat named;
    return sys::fstatat(folder, name, &named, flags).ok() && IsSameFile(named, file);
}

/// The same, asked of the server where the file system has one: only an open makes it look the name up. `access` is that
/// of openat, and one that the caller has. A file on which another program holds a lease is not waited for.
inline bool LeadsToOnServer(int folder, const char* name, const struct stat& file, int access) {
    const auto opened = sys::openat(folder, name, access | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0);
    if (opened.error() == EWOULDBLOCK)
        return LeadsTo(folder, name, file, access & O_NOFOLLOW ? AT_SYMLINK_NOFOLLOW : 0);
    const UniqueFd again(opened);
    struct stat named;
    return again && sys::fstat(again.Get(), &named).ok() && IsSameFile(named, file);
}

}  // namespace qv::platform
