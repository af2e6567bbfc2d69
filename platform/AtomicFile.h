#pragma once

/// @file Replacing a file atomically by a new version.

#include <memory>
#include <string>

#include "platform/File.h"
#include "platform/FileStatus.h"
#include "platform/Folder.h"

namespace qv::platform {

enum class IfExists {
    Fail,
    Replace,
    /// As if the file were written in place: refused if it is not writable (AccessDenied), and while another handle
    /// denies writing (SharingViolation). The new version keeps mode, owner, group, access lists and extended
    /// attributes as far as the user may set them; on Windows attributes, access lists and streams. There the system may
    /// rename twice: for a moment a reader may find no file, and a crash then leaves only ".qvN.new". Where the file system
    /// does not support locks, it fails on Linux with InvalidFile, as opening for writing does.
    Update,
    /// Does the same, but on file systems without locks succeeds regardless of other handles.
    UpdateEvenWithoutLocks
};
/// Access to the new file on Linux; on Windows the folder's access list applies. AsFolder: world-readable, and writable
/// for all users who can write to the folder.
enum class Access { Owner, AsUmaskSays, AsFolder };
enum class Durability {
    Deferred,  ///< a crash of the machine after Commit may lose the new version, or both
    Synced     ///< the new version and its name have reached the disk when Commit returns
};

/// One file under construction. Not thread-safe.
///
/// Until Commit it is invisible if the file system supports unnamed files (Linux: O_TMPFILE). Otherwise it has a
/// temporary name beside the target, ".qvN.tmp" with the first free number. The file of a killed process is deleted by
/// the next AtomicFile that finds its name and no process that holds it. Programs must not use these names for their
/// own files.
class AtomicFile {
public:
    AtomicFile();
    /// Discards the file unless it was committed. The target is then unchanged.
    ~AtomicFile();
    AtomicFile(AtomicFile&& other) noexcept;
    AtomicFile& operator=(AtomicFile&& other) noexcept;

    /// Creates an empty file for reading and writing in the folder of `target`. The path may use "\" on every system; a
    /// link as the target is replaced, not followed: see LinkTarget. Discards a previous file under construction.
    Status Create(const char* target, Access access = Access::Owner);
    /// Does the same for the name of an entry in an open folder, which must outlive the use of this object.
    Status CreateIn(const Folder& folder, const std::string& name, Access access = Access::Owner);

    /// Returns the handle to read and write through; kNoFile before Create, after Commit and after Drop. Owned by this
    /// object.
    FileHandle Handle() const;

    /// Passes all data to the file system, which reports here what it cannot store, and renames the file to the
    /// target's name. With IfExists::Fail an existing target makes it fail with AccessDenied, and the file is kept for
    /// another Commit; after success and after every other failure it is gone. After a failure the target is unchanged,
    /// except that with Synced the new version may be in place without its name being on the disk yet.
    Status Commit(IfExists ifExists, Durability durability);

    /// Deletes the file under construction, if any.
    void Drop();

private:
    struct Body;

    std::unique_ptr<Body> m_body;
};

/// Returns the access to create the new version of a file with: `ifMissing`, or Owner if the file exists. A private
/// file's new version must not be readable to others before Commit applies the file's permissions.
inline Access AccessForUpdate(const std::string& target, Access ifMissing) {
    FileInfo info;
    return StatusOf(target.c_str(), info).cause() == FileCause::FileNotFound ? ifMissing : Access::Owner;
}

/// Deletes a file durably: after success a crash of the machine does not restore its name.
Status RemoveSynced(const char* path);

}  // namespace qv::platform
