#pragma once

#include "platform/posix/UniqueFd.h"

namespace qv::platform {

/// Identifies a file: the same for all its names, and unique among existing files.
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

/// Returns whether a name, relative to a folder, currently refers to the file, as far as this machine knows: network
/// file systems answer from a cache. `flags` are those of fstatat.
inline bool LeadsTo(int folder, const char* name, const struct stat& file, int flags = 0) {
    struct stat named;
    return sys::fstatat(folder, name, &named, flags).ok() && IsSameFile(named, file);
}

/// Does the same, querying the server of a network file system: only an open makes it look up the name. `access` is
/// that of openat, and must be one that the caller has. Does not wait for a file that another program holds a lease on.
inline bool LeadsToOnServer(int folder, const char* name, const struct stat& file, int access) {
    const auto opened = sys::openat(folder, name, access | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0);
    if (opened.error() == EWOULDBLOCK)
        return LeadsTo(folder, name, file, access & O_NOFOLLOW ? AT_SYMLINK_NOFOLLOW : 0);
    const UniqueFd again(opened);
    struct stat named;
    return again && sys::fstat(again.Get(), &named).ok() && IsSameFile(named, file);
}

}  // namespace qv::platform
