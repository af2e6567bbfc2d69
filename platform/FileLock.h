#pragma once

/// @file Locking between the readers and writers of a file that is replaced by every change.

#include <string>

#include "platform/File.h"

namespace qv::platform {

enum class FileLockKind {
    Read,  ///< no lock on Linux, where an open file keeps its old version
    Write
};

/// A lock on "PATH.lock", which is created if missing, on Linux for all users who can write to its folder, and never
/// deleted. It is released with its object or process, and also excludes objects of the same process. Not thread-safe.
class FileLock {
public:
    FileLock() = default;
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Waits without a timeout until no other object holds a conflicting lock. If the file system does not support
    /// locks, returns success at once.
    Status Take(const std::string& path, FileLockKind kind);

private:
    FileHandle m_lock = kNoFile;
};

}  // namespace qv::platform
