#pragma once

#include <functional>
#include <memory>

#include "platform/Folder.h"

namespace qv::platform {

/// Is called with the number of bytes that have been copied since the last call. It must not throw.
using CopiedBytes = std::function<void(std::uint64_t bytes)>;

/// Copies a file with its time of modification and its attributes (on Linux the permissions, and the time of reading; not
/// the owner). A file that has the new name is replaced; nothing but files is copied or replaced, and devices and pipes
/// are never opened. Paths may use "\" on every system.
///
/// The share modes of both files count: the copy fails when someone denies reading the one, or denies writing the
/// other. On Windows the old file is written over, and a copy that fails leaves none. On Linux the copy is written
/// under another name beside the target ("." in front) and takes its place when it is whole, so a failure, or the end
/// of the process, leaves the old file as it was; a target that is a link is replaced by the copy; holes stay holes.
/// When the call is back, the copy need not have reached the disk.
Status CopyWholeFile(const char* from, const char* to);

/// The same from one open folder into another one, whatever becomes of their paths meanwhile. On Linux a target that is a
/// link is replaced, and with NoLink a source that is one is refused (BadPath). Names are in the library's form. `copied`
/// may be empty.
Status CopyFileIn(const Folder& from, const std::string& name, LastName source, const Folder& to,
                  const std::string& newName, const CopiedBytes& copied);

/// CopyFileIn in two steps, so that what takes time can be done ahead and on another thread. Without Commit there is no
/// copy. The folders must outlive it.
class FileCopy {
public:
    /// Reads the file and writes the copy, which has no name yet. On Windows all is left to Commit.
    FileCopy(const Folder& from, const std::string& name, LastName source, const Folder& to,
             const std::string& newName);
    FileCopy(FileCopy&&) noexcept;
    ~FileCopy();

    /// Gives the copy its name. What went wrong before is reported here too.
    Status Commit(const CopiedBytes& copied);

private:
    struct Body;

    std::unique_ptr<Body> m_body;
};

}  // namespace qv::platform
