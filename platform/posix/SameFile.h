#pragma once

#include "platform/posix/System.h"

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

/// Whether a name, seen from a folder, leads to the file right now. `flags` are those of fstatat.
inline bool LeadsTo(int folder, const char* name, const struct stat& file, int flags = 0) {
    struct stat named;
    return sys::fstatat(folder, name, &named, flags).ok() && IsSameFile(named, file);
}

}  // namespace qv::platform
