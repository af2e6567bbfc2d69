#include "platform/Volume.h"

#include "platform/Path.h"
#include "platform/posix/SameFile.h"
#include "platform/posix/System.h"

namespace qv::platform {

namespace {

/// The root is its own parent. In a confined process it need not be where a file system is mounted.
bool IsRoot(const std::string& native) {
    struct stat folder;
    return sys::fstatat(AT_FDCWD, native.c_str(), &folder, 0).ok() &&
           LeadsTo(AT_FDCWD, (native + "/..").c_str(), folder);
}

}  // namespace

bool IsVolume(const char* path) {
    struct statx status;
    const std::string native = NativePath(path);
    const auto asked = sys::statx(AT_FDCWD, native.c_str(), AT_NO_AUTOMOUNT, STATX_TYPE, &status);
    if (!asked.ok() || !S_ISDIR(status.stx_mode)) return false;
    return (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) || IsRoot(native);
}

std::string ShortPath(const char* path) {
    return path;
}

}  // namespace qv::platform
