#include "platform/FileLock.h"

#include "platform/windows/UniqueHandle.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {

FileLock::~FileLock() {
    if (m_lock != kNoFile) CloseFile(m_lock).IgnoreError();  // nothing was written
}

// Readers lock too, because an open file cannot be replaced.
Status FileLock::Take(const std::string& path, FileLockKind kind) {
    constexpr DWORD kAccess = GENERIC_READ | GENERIC_WRITE, kShared = FILE_SHARE_READ | FILE_SHARE_WRITE;
    const std::string lock = path + ".lock";
    const auto opened = sys::CreateFileW(WidePath(lock).c_str(), kAccess, kShared, nullptr, DWORD{OPEN_ALWAYS},
                                         DWORD{FILE_ATTRIBUTE_NORMAL}, nullptr);
    if (!opened.ok()) return opened.statusAt(lock.c_str());
    UniqueHandle file(opened.value());
    OVERLAPPED start = {};
    const DWORD flags = kind == FileLockKind::Write ? LOCKFILE_EXCLUSIVE_LOCK : 0;
    const auto locked = sys::LockFileEx(file.Get(), flags, DWORD{0}, DWORD{1}, DWORD{0}, &start);
    if (!locked.ok() && !MeansNoLocks(locked.error())) return locked.status();
    m_lock = ContractHandle(file.Release());
    return {};
}

}  // namespace qv::platform
