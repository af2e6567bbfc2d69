#pragma once

#include <string>

namespace qv::platform {

/// Whether the path, with its final separator, is the root of a volume: on Linux "/" and folders on which a
/// file system is mounted.
bool IsVolume(const char* path);

/// The kind of the file system on which a path lies, by the system's own name ("ext4", "fuse.sshfs", "NTFS"); empty where the
/// system does not tell.
std::string FileSystemOf(const char* path);

/// The short (8.3) form of a path; the path as it is where there is none, as always on Linux.
std::string ShortPath(const char* path);

}  // namespace qv::platform
