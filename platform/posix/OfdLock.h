#pragma once

/// @file Byte-range locks owned by the open file description: they also exclude other descriptors of this process, and
/// are released when the last duplicate of the descriptor is closed. Network file systems support them too.

#include <cerrno>

#include "platform/posix/System.h"

namespace qv::platform {

enum class OfdLockKind : short { Read = F_RDLCK, Write = F_WRLCK };

struct ByteRange {
    off_t start = 0;
    off_t length = 0;  ///< 0: all from `start` on
};

namespace detail {

/// File systems reject locks with different error numbers; all are mapped to one, which MeansNoLocks.
inline Result<int> WithOneRefusal(const Result<int>& call) {
    const auto error = call.error();
    const bool refused = error == EACCES || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
    return refused ? Result<int>::OfError(-1, ENOLCK) : call;
}

inline Result<int> CallOfdLock(int file, int command, struct flock& lock, OfdLockKind kind, const ByteRange& range) {
    lock = {};
    lock.l_type = static_cast<short>(kind);
    lock.l_whence = SEEK_SET;
    lock.l_start = range.start;
    lock.l_len = range.length;
    return WithOneRefusal(sys::fcntl_lock(file, command, &lock));
}

}  // namespace detail

/// Sets a lock, which requires a descriptor open for reading or for writing, depending on the kind. Fails at once on a
/// conflict with another descriptor: IsLockConflict is then true.
inline Result<int> SetOfdLock(int file, OfdLockKind kind, const ByteRange& range = {}) {
    struct flock lock;
    return detail::CallOfdLock(file, F_OFD_SETLK, lock, kind, range);
}

/// Does the same, but waits while another lock conflicts.
inline Result<int> WaitForOfdLock(int file, OfdLockKind kind, const ByteRange& range = {}) {
    struct flock lock;
    return detail::CallOfdLock(file, F_OFD_SETLKW, lock, kind, range);
}

inline bool IsLockConflict(const Result<int>& set) {
    return set.error() == EAGAIN;
}

/// Returns whether another descriptor's lock would conflict. The descriptor may be open with any access.
inline Result<bool> HasLockConflict(int file, OfdLockKind kind, const ByteRange& range = {}) {
    struct flock lock;
    const Result<int> asked = detail::CallOfdLock(file, F_OFD_GETLK, lock, kind, range);
    return asked.ok() ? Result<bool>(lock.l_type != F_UNLCK) : Result<bool>::OfError(false, asked.error());
}

}  // namespace qv::platform
