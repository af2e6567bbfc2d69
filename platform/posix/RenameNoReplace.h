#pragma once

#include "platform/posix/System.h"

namespace qv::platform {

namespace detail {

/// Without RENAME_NOREPLACE (network file systems): linking a file to a second name fails if that exists, too.
inline Result<int> RenameInSteps(int fromFolder, const char* from, int toFolder, const char* to) {
    struct stat status;
    if (sys::fstatat(toFolder, to, &status, AT_SYMLINK_NOFOLLOW).ok()) return Result<int>::OfError(-1, EEXIST);
    if (const auto asked = sys::fstatat(fromFolder, from, &status, AT_SYMLINK_NOFOLLOW); !asked.ok()) return asked;
    if (S_ISDIR(status.st_mode)) return sys::renameat(fromFolder, from, toFolder, to);
    const auto linked = sys::linkat(fromFolder, from, toFolder, to, 0);
    if (linked.ok()) return sys::unlinkat(fromFolder, from, 0);
    return linked.error() == EEXIST ? linked : sys::renameat(fromFolder, from, toFolder, to);
}

}  // namespace detail

/// Renames a file or folder to a name that must be free: EEXIST otherwise. If the file system supports neither this nor
/// hard links, the name is only checked beforehand.
inline Result<int> RenameNoReplace(int fromFolder, const char* from, int toFolder, const char* to) {
    const auto renamed = sys::renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE);
    const bool unknown = renamed.error() == EINVAL || renamed.error() == ENOSYS;
    return unknown ? detail::RenameInSteps(fromFolder, from, toFolder, to) : renamed;
}

}  // namespace qv::platform
