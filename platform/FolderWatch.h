#pragma once

/// @file Waiting for changes in a folder.

#include <memory>

namespace qv::platform {

/// Kinds of changes, with the numbers of Windows. If Linux cannot distinguish two of them it reports too many, never
/// too few: writing to a file counts as a change of its size, and a change of an entry's attributes, times or owner as
/// kAttributes, kLastWrite and kSecurity. With subfolders every folder that is created, deleted, renamed, moved in or
/// out counts, since changes in it may have been missed.
enum FolderChange : unsigned {
    kFileNames = 0x1,    ///< files created, deleted, renamed, moved in or out
    kFolderNames = 0x2,  ///< the same for folders
    kAttributes = 0x4,
    kSize = 0x8,
    kLastWrite = 0x10,
    kLastAccess = 0x20,
    kCreation = 0x40,
    kSecurity = 0x100
};

/// A watched folder. Only Stop is thread-safe; all other members must be called by one thread.
class FolderWatch {
public:
    virtual ~FolderWatch() = default;

    /// Returns once the watch is armed: no later change is missed. Null if the folder does not exist or is not
    /// readable, or if the system has no watches left. On Linux subfolders that are not readable, or whose path is too
    /// long for the system, are skipped, and links to folders are not followed.
    static std::unique_ptr<FolderWatch> Open(const char* folder, bool subfolders, unsigned changes);

    enum class Event { Change, Stop, Failure };
    /// Waits, without a timeout, for the next unreported change; changes that occurred together are reported as one. A
    /// change takes precedence over a stop. Returns after a bounded number of changes, even if they never end.
    virtual Event Wait() = 0;
    /// Must be called after each change. Returns false if the folder is no longer watched: it is gone; on Linux also if
    /// its file system is unmounted, or if changes could be missed from now on, since the system has no watches left
    /// or, with subfolders, the folder or one of its parents was renamed.
    virtual bool Rearm() = 0;
    /// Ends the current wait, or the next one.
    virtual void Stop() = 0;
    /// Closes the watch; only Stop may be called afterwards.
    virtual void Close() = 0;
};

}  // namespace qv::platform
