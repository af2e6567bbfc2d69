#pragma once

/// @file The new version of a file that takes the old one's place whole, or not at all.

#include <memory>
#include <string>

#include "platform/File.h"
#include "platform/Folder.h"

namespace qv::platform {

enum class IfExists {
    Fail,
    Replace,
    /// As if the file had been written in place: refused where it may not be written (AccessDenied), and while another
    /// handle denies writing (SharingViolation). The new version keeps what the user may give it of mode, owner, group,
    /// access lists and extended attributes; on Windows of attributes, access lists and streams.
    Update
};
/// Who may use the file on Linux; on Windows the folder's access list decides. AsFolder: everybody may read it, and whoever
/// may write in the folder may write it.
enum class Access { Owner, AsUmaskSays, AsFolder };
enum class Durability {
    Deferred,  ///< a crash of the machine after Commit may lose the new version, or both
    Synced     ///< the new version has reached the disk when Commit returns, and its name too
};

/// One file under construction, for one thread.
///
/// Until Commit it is invisible where the file system can make files without a name (Linux: O_TMPFILE). Elsewhere it has
/// a temporary name beside the target, ".qvN.tmp" with the first free number. A process that is killed leaves such a file;
/// the next AtomicFile that encounters the name finds that no process holds it, and deletes it. Programs must not keep files
/// of their own under these names.
class AtomicFile {
public:
    AtomicFile();
    /// Drops the file unless it was committed. The target stays as it was.
    ~AtomicFile();
    AtomicFile(AtomicFile&& other) noexcept;
    AtomicFile& operator=(AtomicFile&& other) noexcept;

    /// Makes an empty file for reading and writing in the folder of `target`. The path may use "\"
    /// on every system; a link as the target is replaced, not followed: see LinkTarget. Drops a file under construction first.
    Status Create(const char* target, Access access = Access::Owner);
    /// The same for a name of one entry in an open folder, which must outlive this object's use.
    Status CreateIn(const Folder& folder, const std::string& name, Access access = Access::Owner);

    /// The handle to read and write through; kNoFile before Create, after Commit and after Drop. Owned by this object.
    FileHandle Handle() const;

    /// Hands all data to the file system, which reports here what it cannot keep, and gives the file the target's name.
    /// With IfExists::Fail an existing target makes it fail with AccessDenied and the file stays for another Commit; after
    /// success and after every other failure it is gone. After a failure the target is what it was, except that with
    /// Synced the new version may be in place and only its name not yet on the disk.
    Status Commit(IfExists ifExists, Durability durability);

    /// Deletes the file under construction, if there is one.
    void Drop();

private:
    struct Body;

    std::unique_ptr<Body> m_body;
};

/// Deletes a file. After success the disk too no longer has its name: no crash of the machine brings the file back.
Status RemoveSynced(const char* path);

}  // namespace qv::platform
