#include "platform/Volume.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/Path.h"

namespace qv::platform {

namespace {

/// The root lies in itself. In a confined process it need not be where a file system is mounted.
bool IsRoot(const std::string& native) {
    struct stat here, above;
    return !::stat(native.c_str(), &here) && !::stat((native + "/..").c_str(), &above) && here.st_ino == above.st_ino &&
           here.st_dev == above.st_dev;
}

}  // namespace

bool IsVolume(const char* path) {
    struct statx status;
    const std::string native = NativePath(path);
    if (::statx(AT_FDCWD, native.c_str(), AT_NO_AUTOMOUNT, STATX_TYPE, &status) || !S_ISDIR(status.stx_mode))
        return false;
    return (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) || IsRoot(native);
}

std::string ShortPath(const char* path) {
    return path;
}

}  // namespace qv::platform
