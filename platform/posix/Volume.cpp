#include "platform/Volume.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/Path.h"

namespace qv::platform {

bool IsVolume(const char* path) {
    struct statx status;
    if (::statx(AT_FDCWD, NativePath(path).c_str(), AT_NO_AUTOMOUNT, STATX_TYPE, &status)) return false;
    return S_ISDIR(status.stx_mode) && (status.stx_attributes & STATX_ATTR_MOUNT_ROOT);
}

std::string ShortPath(const char* path) {
    return path;
}

}  // namespace qv::platform
