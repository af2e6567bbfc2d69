#pragma once

/// @file How the readers and writers of one file that is replaced by every change take turns.

#include <string>

#include "platform/File.h"

namespace qv::platform {

enum class TurnKind {
    Read,  ///< on Linux nothing is locked: who has the file open keeps the version that was there
    Write
};

/// A lock on "PATH.lock", which is made when it is missing, on Linux for all who may write in its folder, and stays. It ends with its object, or
/// with the process, and binds objects of one process too. One object, one thread.
class FileTurn {
public:
    FileTurn() = default;
    ~FileTurn();
    FileTurn(const FileTurn&) = delete;
    FileTurn& operator=(const FileTurn&) = delete;

    /// Waits until no other object has a turn that excludes this one, for as long as that takes. A file system that keeps
    /// no locks is no failure: the call returns at once there.
    Status Take(const std::string& path, TurnKind kind);

private:
    FileHandle m_lock = kNoFile;
};

}  // namespace qv::platform
