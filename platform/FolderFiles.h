#pragma once

/// @file Files that are made in a folder held open: they land in that folder and nowhere else. Names are those of one
/// entry, in the system's own form; links are never followed.

#include <string>
#include <string_view>

#include "platform/Folder.h"

namespace qv::platform {

/// Whether the name, given to the calls below, names an entry of the folder and nothing else: not the folder itself or the
/// one above, without separators. On Windows neither a device (NUL, COM1.txt), a stream or a drive ("a:b"), nor a name that
/// the system changes or refuses (final blanks and points, control characters, wild cards).
bool IsPlainName(std::string_view name);

/// No failure when there is something of that name already, whatever it is.
Status MakeFolderIn(const Folder& folder, const std::string& name);
/// Makes a file that did not exist, for writing. On Windows nobody else may use it meanwhile.
Status CreateFileIn(const Folder& folder, const std::string& name, FileHandle& handle);
Status RemoveFileIn(const Folder& folder, const std::string& name);
/// Gives a file another name, in the place of a file or link of that name, read-only or not; a folder is not replaced. On
/// Linux an opener of the replaced file keeps it; on Windows that one makes the call fail.
Status MoveOverIn(const Folder& folder, const std::string& from, const std::string& to);

/// Whether files have an archive bit. Where they have none, every file counts as one that has it set.
bool KeepsArchiveBit();

/// What an archive knows of a file.
struct FileStamp {
    std::int64_t time;    ///< seconds since 1970; -1 leaves the times alone
    unsigned attributes;  ///< FileAttribute bits; on Linux only kReadOnly counts
};

/// Sets the times of writing and creation (of writing alone on Linux), and the attributes.
Status StampFile(FileHandle handle, const FileStamp& stamp);
/// The same for a file that is there.
Status StampFileIn(const Folder& folder, const std::string& name, const FileStamp& stamp);

}  // namespace qv::platform
