#pragma once

/// @file Files by name: what the file system tells of them, and their names' changes. Paths may use "\" on every system.

#include <string>

#include "platform/File.h"

namespace qv::platform {

/// Attribute bits as Windows numbers them.
enum FileAttribute : unsigned { kReadOnly = 1, kHidden = 2, kSystem = 4, kDirectory = 16, kArchive = 32 };
/// Those that can be given to a file.
constexpr unsigned kSettable = kReadOnly | kHidden | kSystem | kArchive;

/// Times are seconds since 1970 UTC, -1 when the file system does not keep them.
///
/// On Linux: read-only means no owner write bit, hidden a leading point; there are no system and archive bits. The time of
/// creation is the birth time where the file system has one, else the last change of the status. A directory has size 0.
struct FileInfo {
    std::int64_t created = -1, modified = -1, accessed = -1;
    std::uint64_t size = 0;
    unsigned attributes = 0;
    bool isRegular = false;  ///< no folder, and on Linux no device or pipe
};

/// Fails for a missing path and, on Windows, for the root of a volume, which has no entry of its own.
Status StatusOf(const char* path, FileInfo& info);
Status StatusOf(FileHandle handle, const char* path, FileInfo& info);

/// Sets the attributes, and the time of modification unless that is -1 or stands to the second already. On Linux only
/// read-only can be set: it takes all write bits, or gives the owner's.
Status ChangeStatus(const char* path, std::int64_t modified, unsigned attributes);

/// Makes an empty file. Fails when the name exists, whatever it names (MeansNameTaken), links included.
Status MakeFile(const char* path);
/// Deletes a file, no directory. On Linux open and read-only files can be deleted.
Status RemoveFile(const char* path);
/// Renames a file or directory; fails when the new name exists. On Linux not across file systems.
Status RenameFile(const char* from, const char* to);

/// Makes a folder. No failure when the name exists already, whatever it names.
Status CreateFolder(const char* path);
/// Deletes an empty folder, or a link to a folder and never what that leads to. A final separator does not count.
Status RemoveFolder(const char* path);
/// Whether the path's last name is a link to a folder.
bool IsFolderLink(const char* path);
/// The path of the file that a link leads to, which need not exist. Any other path stays as it is.
std::string LinkTarget(const char* path);
/// Whether the path is that of a regular file, no link, whose owner this user is; on Windows the owner does not count.
bool IsOwnFile(const char* path);
/// True when both paths lead to one file or folder, by way of links too.
bool IsSame(const char* a, const char* b);

}  // namespace qv::platform
