#pragma once

/// @file Creation of files in an open folder: they are created in that folder and nowhere else. Names are those of a
/// single entry, in the system's form; links are never followed.

#include <string>
#include <string_view>

#include "platform/Folder.h"

namespace qv::platform {

/// Returns whether the name, passed to the calls below, can only refer to an entry of the folder: not to the folder
/// itself or its parent, and without separators. On Windows also not to a device (NUL, COM1.txt), a stream or a drive
/// ("a:b"), and without anything that the system changes or rejects (trailing blanks and dots, control characters,
/// wildcards).
bool IsPlainName(std::string_view name);

/// Succeeds if the name already exists, regardless of its type.
Status MakeFolderIn(const Folder& folder, const std::string& name);
/// Creates a new file, for writing. On Windows it is open exclusively.
Status CreateFileIn(const Folder& folder, const std::string& name, FileHandle& handle);
Status RemoveFileIn(const Folder& folder, const std::string& name);
/// Renames a file, replacing a file or link of the new name, read-only or not; a folder is not replaced. On Linux an
/// open replaced file remains usable; on Windows it makes the call fail.
Status MoveOverIn(const Folder& folder, const std::string& from, const std::string& to);

/// Returns whether files have an archive bit. Otherwise every file counts as having it set.
bool KeepsArchiveBit();

/// The metadata of a file in an archive.
struct FileStamp {
    std::int64_t time;    ///< seconds since 1970; -1: times are unchanged
    unsigned attributes;  ///< FileAttribute bits; on Linux only kReadOnly is used
};

/// Sets modification and creation time (only the former on Linux), and the attributes.
Status StampFile(FileHandle handle, const FileStamp& stamp);
/// Does the same for an existing file.
Status StampFileIn(const Folder& folder, const std::string& name, const FileStamp& stamp);

}  // namespace qv::platform
