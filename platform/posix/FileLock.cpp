#include "platform/FileLock.h"

#include "platform/Path.h"
#include "platform/posix/OfdLock.h"
#include "platform/posix/UniqueFd.h"
#include "platform/posix/attributes/FolderAccess.h"

namespace qv::platform {
namespace {

constexpr int kFlags = O_RDWR | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC;

/// Opens the lock file, creating it if missing, for all users who can change files in its folder.
Result<int> OpenLockFile(const std::string& path) {
    constexpr mode_t kOwnerOnly = 0600;
    for (;;) {
        const auto opened = sys::openat(AT_FDCWD, path.c_str(), kFlags, 0);
        if (opened.error() != ENOENT) return opened;
        const auto made = sys::openat(AT_FDCWD, path.c_str(), kFlags | O_CREAT | O_EXCL, kOwnerOnly);
        if (made.error() == EEXIST) continue;
        if (made.ok()) GrantAsFolder(made.value(), AT_FDCWD, path.substr(0, path.rfind('/') + 1) + ".");
        return made;
    }
}

}  // namespace

FileLock::~FileLock() {
    if (m_lock != kNoFile) CloseFile(m_lock).IgnoreError();  // nothing was written
}

Status FileLock::Take(const std::string& path, FileLockKind kind) {
    if (kind == FileLockKind::Read) return {};
    const std::string lock = path + ".lock";
    const auto opened = OpenLockFile(NativePath(lock));
    if (!opened.ok()) return opened.statusAt(lock.c_str());
    UniqueFd file(opened);
    const auto locked = WaitForOfdLock(file.Get(), OfdLockKind::Write);
    if (!locked.ok() && !MeansNoLocks(locked.error())) return locked.status();
    m_lock = file.Release();
    return {};
}

}  // namespace qv::platform
