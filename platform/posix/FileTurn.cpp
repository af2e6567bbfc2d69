#include "platform/FileTurn.h"

#include "platform/Path.h"
#include "platform/posix/OfdLock.h"
#include "platform/posix/UniqueFd.h"

namespace qv::platform {

FileTurn::~FileTurn() {
    if (m_lock != kNoFile) CloseFile(m_lock).IgnoreError();  // nothing was written
}

Status FileTurn::Take(const std::string& path, TurnKind kind) {
    if (kind == TurnKind::Read) return {};
    constexpr int kFlags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC;
    constexpr mode_t kOwnerOnly = 0600;
    const std::string lock = path + ".lock";
    const auto opened = sys::openat(AT_FDCWD, NativePath(lock).c_str(), kFlags, kOwnerOnly);
    if (!opened.ok()) return opened.statusAt(lock.c_str());
    UniqueFd file(opened);
    const auto locked = WaitForOfdLock(file.Get(), OfdLockKind::Write);
    if (!locked.ok() && !MeansNoLocks(locked.error())) return locked.status();
    m_lock = file.Release();
    return {};
}

}  // namespace qv::platform
