#pragma once

/// @file Waiting for changes in a folder.

#include <memory>

namespace qv::platform {

/// What counts as a change, as Windows numbers it. Where Linux cannot tell two of them apart it counts too many, never too
/// few: a file written to counts as a change of its size, and a change of an entry's attributes, times or owner as one of
/// kAttributes, kLastWrite and kSecurity alike. With subfolders every folder that is made, deleted, renamed, moved in or
/// out counts, since what has changed in it may have gone unseen.
enum FolderChange : unsigned {
    kFileNames = 0x1,    ///< files made, deleted, renamed, moved in or out
    kFolderNames = 0x2,  ///< the same of folders
    kAttributes = 0x4,
    kSize = 0x8,
    kLastWrite = 0x10,
    kLastAccess = 0x20,
    kCreation = 0x40,
    kSecurity = 0x100
};

/// A watched folder. One thread opens it, waits, rearms and closes it; any thread may stop it.
class FolderWatch {
public:
    virtual ~FolderWatch() = default;

    /// Returns once the watch is armed: no later change is missed. Null when the folder does not exist or may not be read,
    /// or when the system has no watches left. On Linux subfolders that may not be read, or whose path is longer than the
    /// system takes, are left out, and links to folders are not followed.
    static std::unique_ptr<FolderWatch> Open(const char* folder, bool subfolders, unsigned changes);

    enum class Event { Change, Stop, Failure };
    /// Waits, without limit, for the next change that has not been reported yet; changes that came together are reported as
    /// one. A change goes before a stop. However many changes go on coming, it returns after a bounded number of them.
    virtual Event Wait() = 0;
    /// To be called after each change. False when the folder is not watched any longer: it is gone; on Linux also when its
    /// file system is unmounted, or when changes could be missed from now on, since the system has no watches left or, with
    /// subfolders, the folder or one above it was renamed.
    virtual bool Rearm() = 0;
    /// Ends the wait, the present one or the next.
    virtual void Stop() = 0;
    /// Ends the watch; only Stop may be called afterwards.
    virtual void Close() = 0;
};

}  // namespace qv::platform
