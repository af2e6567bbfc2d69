#include "platform/Volume.h"

#include <cstdlib>
#include <sstream>

#include "platform/File.h"
#include "platform/Path.h"
#include "platform/posix/SameFile.h"
#include "platform/posix/System.h"

namespace qv::platform {

namespace {

/// The root is its own parent. In a confined process it need not be a mount point.
bool IsRoot(const std::string& native) {
    struct stat folder;
    return sys::fstatat(AT_FDCWD, native.c_str(), &folder, 0).ok() &&
           LeadsTo(AT_FDCWD, (native + "/..").c_str(), folder);
}

/// Parses a line such as "36 35 98:0 /of/the/source /mounted/here rw,noatime master:1 - ext3 /dev/root rw": the mount's
/// number is first, the type follows the lone dash.
std::string KindInMountTable(const std::string& table, std::uint64_t mount) {
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t dash = line.find(" - ");
        if (dash == line.npos || std::strtoull(line.c_str(), nullptr, 10) != mount) continue;
        return line.substr(dash + 3, line.find(' ', dash + 3) - dash - 3);
    }
    return "";
}

std::string MountTable() {
    const UniqueFd file(sys::openat(AT_FDCWD, "/proc/self/mountinfo", O_RDONLY | O_CLOEXEC, 0));
    std::string table;
    char buffer[4096];
    for (std::size_t count = 0; file && ReadBytes(file.Get(), buffer, sizeof buffer, count).ok() && count != 0;)
        table.append(buffer, count);
    return table;
}

}  // namespace

std::string FileSystemOf(const char* path) {
    struct statx status;
    const auto asked = sys::statx(AT_FDCWD, NativePath(path).c_str(), AT_NO_AUTOMOUNT, STATX_MNT_ID, &status);
    return asked.ok() && (status.stx_mask & STATX_MNT_ID) ? KindInMountTable(MountTable(), status.stx_mnt_id) : "";
}

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
