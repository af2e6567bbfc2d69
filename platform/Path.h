#pragma once

/// @file Paths between the library's form, with "\" between the names, and the system's own.
///
/// A name on Linux may hold a "\" of its own. In the library's form the character U+F05C is in its place (the bytes EF 81
/// 9C, whatever the code page), the convention by which Windows layers over POSIX file systems carry it. A name that holds
/// U+F05C, or the escape U+F025 (EF 80 A5), gets the escape before each of them. So every name has a library form of its
/// own, and all its other bytes stay as they are.

#include <string>
#include <string_view>

namespace qv::platform {

/// True where a path may begin with a drive letter and a colon.
bool HasDriveLetters();

/// The form that system calls take: on Linux every "\" becomes "/", and every U+F05C a "\". Every call with a path goes
/// through this one place.
std::string NativePath(std::string_view path);
/// The way back, which loses nothing: NativePath of the result is `native`. On Windows every "/" becomes "\".
std::string LibraryPath(std::string_view native);
/// The same for the name of one entry. On Windows a name that the code page cannot hold comes back with "?" in it, for
/// people alone.
std::string LibraryName(std::string name);
/// Whether LibraryName leaves the name as it is, as nearly every one.
bool IsPlainInBothForms(std::string_view name);

/// The longest path that the system's calls take, in bytes of its own form; on Windows in characters.
std::size_t LongestPath();

/// The absolute path, in the library's form; links are not followed, nothing needs to exist. The path itself where the
/// code page cannot hold the current folder.
std::string FullPath(const char* path);

/// The folder for temporary files, in the library's form with its final separator; empty when the system has none.
/// On Linux it is the environment's TMPDIR, else /tmp.
std::string TempDirectory();

/// The process's current folder, in the library's form without a final separator; empty when it is gone or the code page
/// cannot hold it. ChangeFolder does nothing where it fails.
std::string CurrentFolder();
void ChangeFolder(const std::string& path);
/// A folder that is always there: the Windows directory, or the root.
std::string SystemFolder();

}  // namespace qv::platform
