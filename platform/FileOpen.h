#pragma once

/// @file How files are opened in turn with other programs, and let go of.

#include "platform/File.h"

namespace qv::platform {

/// How a file is to be opened.
struct OpenRequest {
    bool read = false, write = false;
    bool denyRead = false, denyWrite = false;  ///< what no other handle may do meanwhile
    bool create = false;                       ///< a missing file is made
    bool truncate = false;                     ///< an existing one is emptied
    bool inheritable = false;                  ///< child programs get the handle too
    bool folderAccess = false;                 ///< a file for all users of its folder, see below
    bool noLink = false;                       ///< on Linux a path whose last name is a link is refused (BadPath)
};

/// Opens a file under the access and deny matrix: it is refused (SharingViolation) when another handle denies what it
/// wants to do, or does what it wants to deny. Paths may use "\" on every system. A refused or failed open has changed
/// nothing. Directories are refused (AccessDenied).
///
/// On Linux the matrix binds programs that open their files here, on this and other machines, as far as the file system
/// keeps byte-range locks. Where it keeps none, a file opens for reading without any guard, and for writing not at all.
/// Devices and pipes have no share modes there; a pipe is opened without waiting for its other end, so writing to one that
/// nobody reads is refused, and reading one that nobody writes finds its end. On file systems without unnamed files
/// (O_TMPFILE) a new file is visible for a moment before it is guarded: an opener that gets in between wins, and the
/// refused one leaves it the empty file. Where the file system refuses locks, the failure is InvalidFile with a number that
/// MeansNoLocks.
///
/// With `folderAccess`, on Linux, a file that is made may be read by everybody who reaches it, and written by whoever may
/// write in the folder, whatever the umask; it gets the folder's group where the user may give it. A file that may only be
/// read is opened for reading although writing was asked for: share modes work just as well then. Links are not followed
/// (BadPath), and nothing but a regular file is opened (AccessDenied). On Windows the folder's access list rules as always.
Status OpenFile(const char* path, const OpenRequest& request, FileHandle& handle);

/// Whether the user may read the file, by one question to the system that opens nothing on Linux; there a share mode that
/// denies reading does not show. On Windows the file is opened and closed.
Status MayRead(const char* path);

/// Closes a file that this program holds exclusively and deletes it, so that no other program gets hold of a file that is
/// about to be deleted. On Linux it is deleted first, and only if the path still names it. On Windows it is closed
/// first; if another program opens it in between, the deletion fails.
/// The failure is that of the deletion; the handle is gone in any case.
Status CloseAndRemove(FileHandle handle, const char* path);

}  // namespace qv::platform
