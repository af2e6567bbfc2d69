#pragma once

#include <string>

namespace qv::platform {

/// Returns whether the path, with its trailing separator, is the root of a volume: on Linux "/" and mount points.
bool IsVolume(const char* path);

/// Returns the type of the file system that contains a path, by the system's name ("ext4", "fuse.sshfs", "NTFS"); empty
/// if the system does not report it.
std::string FileSystemOf(const char* path);

/// Returns the short (8.3) form of a path; the path unchanged if it has none, always on Linux.
std::string ShortPath(const char* path);

}  // namespace qv::platform
