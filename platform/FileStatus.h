#pragma once

/// @file Files by name: their metadata, and operations on their names. Paths may use "\" on every system.

#include <string>

#include "platform/File.h"

namespace qv::platform {

/// Attribute bits as Windows numbers them.
enum FileAttribute : unsigned { kReadOnly = 1, kHidden = 2, kSystem = 4, kDirectory = 16, kArchive = 32 };
/// Those that can be set on a file.
constexpr unsigned kSettable = kReadOnly | kHidden | kSystem | kArchive;

/// Times are seconds since 1970 UTC, -1 if the file system does not store them.
///
/// On Linux: read-only means no owner write bit, hidden a leading dot; there are no system and archive bits. The
/// creation time is the birth time if the file system has one, else the last status change. A directory has size 0.
struct FileInfo {
    std::int64_t created = -1, modified = -1, accessed = -1;
    std::uint64_t size = 0;
    unsigned attributes = 0;
    bool isRegular = false;  ///< no folder, and on Linux no device or pipe
};

/// Fails for a missing path and, on Windows, for the root of a volume, which has no entry of its own.
Status StatusOf(const char* path, FileInfo& info);
Status StatusOf(FileHandle handle, const char* path, FileInfo& info);

/// Sets the attributes, and the modification time unless that is -1 or already equal to the second. On Linux only
/// read-only can be set: it clears all write bits, or sets the owner's.
Status ChangeStatus(const char* path, std::int64_t modified, unsigned attributes);

/// Creates an empty file. Fails if the name exists, regardless of its type (MeansNameTaken), including links.
Status MakeFile(const char* path);
/// Deletes a file, but no directory. On Linux open and read-only files can be deleted.
Status RemoveFile(const char* path);
/// Renames a file or directory; fails if the new name exists. On Linux not across file systems.
Status RenameFile(const char* from, const char* to);

/// Creates a folder. Succeeds if the name already exists, regardless of its type.
Status CreateFolder(const char* path);
/// Deletes an empty folder, or a link to a folder but never its target. A trailing separator is ignored.
Status RemoveFolder(const char* path);
/// Returns whether the path's last name is a link to a folder.
bool IsFolderLink(const char* path);
/// Returns the path of the target of a link, which on Linux need not exist. Returns any other path unchanged.
std::string LinkTarget(const char* path);
/// Returns whether the path names a regular file, not a link, owned by this user; on Windows the owner is ignored.
bool IsOwnFile(const char* path);
/// Returns whether both paths refer to the same file or folder, following links.
bool IsSame(const char* a, const char* b);

}  // namespace qv::platform
