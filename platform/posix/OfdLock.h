#pragma once

/// @file Byte-range locks that belong to the open file description: they exclude other descriptors of this process as well,
/// and end when the last duplicate of the descriptor is closed. Network file systems keep them too.

#include "platform/posix/System.h"

namespace qv::platform {

enum class OfdLockKind : short { Read = F_RDLCK, Write = F_WRLCK };

struct ByteRange {
    off_t start = 0;
    off_t length = 0;  ///< 0 for all from `start` on
};

namespace detail {

inline Result<int> CallOfdLock(int file, int command, struct flock& lock, OfdLockKind kind, const ByteRange& range) {
    lock = {};
    lock.l_type = static_cast<short>(kind);
    lock.l_whence = SEEK_SET;
    lock.l_start = range.start;
    lock.l_len = range.length;
    return sys::fcntl_lock(file, command, &lock);
}

}  // namespace detail

/// Sets a lock, which needs a descriptor open for reading or for writing, as the kind says. Fails at once where another
/// descriptor's lock is in the way: IsLockConflict then.
inline Result<int> SetOfdLock(int file, OfdLockKind kind, const ByteRange& range = {}) {
    struct flock lock;
    return detail::CallOfdLock(file, F_OFD_SETLK, lock, kind, range);
}

/// The same, but waits for as long as another lock is in the way.
inline Result<int> WaitForOfdLock(int file, OfdLockKind kind, const ByteRange& range = {}) {
    struct flock lock;
    return detail::CallOfdLock(file, F_OFD_SETLKW, lock, kind, range);
}

/// EACCES is no conflict: some file systems in user space refuse all locks with it.
inline bool IsLockConflict(const Result<int>& set) {
    return set.error() == EAGAIN;
}

/// Whether another descriptor's lock would be in the way of this one. The descriptor may be open for anything.
inline Result<bool> HasLockConflict(int file, OfdLockKind kind, const ByteRange& range = {}) {
    struct flock lock;
    const Result<int> asked = detail::CallOfdLock(file, F_OFD_GETLK, lock, kind, range);
    return asked.ok() ? Result<bool>(lock.l_type != F_UNLCK) : Result<bool>::OfError(false, asked.error());
}

}  // namespace qv::platform
