#pragma once

#include <functional>
#include <memory>

#include "platform/Folder.h"

namespace qv::platform {

/// Called with the number of bytes copied since the last call. Must not throw.
using CopiedBytes = std::function<void(std::uint64_t bytes)>;

/// Copies a file with its modification time and its attributes (on Linux the permissions, and the access time; not the
/// owner). Replaces an existing file; only files are copied or replaced, and devices and pipes are never opened. Paths
/// may use "\" on every system.
///
/// The share modes of both files apply: the copy fails if another handle denies reading the source or writing the
/// target. On Windows the old file is overwritten, and a failed copy deletes it. On Linux the copy is written under
/// another name beside the target (prefix ".") and renamed when complete, so a failure, or the end of the process,
/// leaves the old file unchanged; a target that is a link is replaced by the copy; holes are preserved. The copy may
/// not have reached the disk when the call returns.
Status CopyWholeFile(const char* from, const char* to);

/// Does the same from one open folder to another, even if their paths change meanwhile. On Linux a target that is a
/// link is replaced, and with NoLink a source that is one is refused (BadPath). Names are in the library's form.
/// `copied` may be empty.
Status CopyFileIn(const Folder& from, const std::string& name, LastName source, const Folder& to,
                  const std::string& newName, const CopiedBytes& copied);

/// CopyFileIn in two steps, so that the slow part can be done ahead and on another thread. Without Commit no copy is
/// made. The folders must outlive it.
class FileCopy {
public:
    /// Reads the file and writes an unnamed copy. On Windows everything is done by Commit.
    FileCopy(const Folder& from, const std::string& name, LastName source, const Folder& to,
             const std::string& newName);
    FileCopy(FileCopy&&) noexcept;
    ~FileCopy();

    /// Gives the copy its name. If it failed, or if the source has changed since, copies again.
    Status Commit(const CopiedBytes& copied);

private:
    struct Body;

    std::unique_ptr<Body> m_body;
};

}  // namespace qv::platform
