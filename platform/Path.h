#pragma once

/// @file Paths between the library's form, with "\" between the names, and the system's own.

#include <string>
#include <string_view>

namespace qv::platform {

/// True where a path may begin with a drive letter and a colon.
bool HasDriveLetters();

/// The form that system calls take: on Linux every "\" becomes "/". Every call with a path goes through this one place.
std::string NativePath(std::string_view path);
/// The way back: on Linux every "/" becomes "\".
std::string LibraryPath(std::string_view native);

/// The absolute path, in the library's form; links are not followed, nothing needs to exist.
std::string FullPath(const char* path);

/// The folder for temporary files, in the library's form with its final separator; empty when the system has none.
/// On Linux it is the environment's TMPDIR, else /tmp.
std::string TempDirectory();

/// The process's current folder, in the library's form without a final separator; empty when it is gone. ChangeFolder does
/// nothing where it fails.
std::string CurrentFolder();
void ChangeFolder(const std::string& path);
/// A folder that is always there: the Windows directory, or the root.
std::string SystemFolder();

}  // namespace qv::platform
