#pragma once

/// @file Opening files with share modes, and closing them.

#include "platform/File.h"

namespace qv::platform {

/// How a file is to be opened.
struct OpenRequest {
    bool read = false, write = false;
    bool denyRead = false, denyWrite = false;  ///< access denied to other handles
    bool create = false;                       ///< creates a missing file
    bool truncate = false;                     ///< truncates an existing one
    bool inheritable = false;                  ///< child programs inherit the handle
    bool folderAccess = false;                 ///< a file for all users of its folder, see below
    bool noLink = false;                       ///< on Linux refuses a path whose last name is a link (BadPath)
};

/// Opens a file under the access and deny rules: it is refused (SharingViolation) if another handle denies the
/// requested access, or has access that this one denies. Paths may use "\" on every system. A refused or failed open
/// has changed nothing. Directories are refused (AccessDenied).
///
/// On Linux the rules apply to programs that open their files here, on this and other machines, as far as the file
/// system supports byte-range locks. Without lock support a file is opened for reading without protection, and opening
/// it for writing fails with InvalidFile and a number that MeansNoLocks. Devices and pipes have no share modes there; a
/// pipe is opened without waiting for its other end, so writing to one without a reader is refused, and reading one
/// without a writer finds its end. On file systems without unnamed files (O_TMPFILE) a new file is visible for a moment
/// before it is locked: an opener that gets in between wins, and the refused one leaves it the empty file.
///
/// With `folderAccess`, on Linux, a created file is world-readable, and writable for all users who can write to the
/// folder, regardless of the umask; it gets the folder's group if the user may set it. A read-only file is opened for
/// reading even if writing was requested: share modes work just as well. Links are not followed (BadPath), and only
/// regular files are opened (AccessDenied). On Windows the folder's access list applies as always, and links are refused
/// (BadPath).
Status OpenFile(const char* path, const OpenRequest& request, FileHandle& handle);

/// Returns whether the user may read the file, by a single query that opens nothing on Linux; there a share mode that
/// denies reading is not detected. On Windows the file is opened and closed.
Status MayRead(const char* path);

/// Closes a file that this program holds exclusively and deletes it, so that no other program opens a file that is
/// about to be deleted. On Linux it is deleted first, and only if the path still names it. On Windows it is closed
/// first; if another program opens it in between, the deletion fails. The result is that of the deletion; the handle is
/// closed in any case.
Status CloseAndRemove(FileHandle handle, const char* path);

}  // namespace qv::platform
