#pragma once

/// @file Conversion of paths between the library's form, with "\" between the names, and the system's.
///
/// A name on Linux may contain a "\". In the library's form it is replaced by the character U+F05C (the bytes EF 81 9C,
/// regardless of the code page), the convention by which Windows layers over POSIX file systems represent it. In a name
/// that contains U+F05C, or the escape U+F025 (EF 80 A5), each of them is prefixed with the escape. So every name has a
/// unique library form, and all its other bytes are unchanged.

#include <string>
#include <string_view>

namespace qv::platform {

/// Returns whether paths may begin with a drive letter and a colon.
bool HasDriveLetters();

/// Returns the form for system calls: on Linux every "\" becomes "/", and every U+F05C a "\". Every call with a path
/// uses this function.
std::string NativePath(std::string_view path);
/// The lossless inverse: NativePath of the result is `native`. On Windows every "/" becomes "\".
std::string LibraryPath(std::string_view native);
/// Does the same for the name of an entry. On Windows a name that the code page cannot represent contains "?", and is
/// only for display.
std::string LibraryName(std::string name);
/// Returns whether LibraryName does not change the name, as is the case for nearly every one.
bool IsPlainInBothForms(std::string_view name);

/// Returns the maximum length of a path in system calls, in bytes of the system's form; on Windows in characters.
std::size_t LongestPath();

/// Returns the absolute path, in the library's form, without following links; it need not exist. Returns the path
/// unchanged if the code page cannot represent the current folder.
std::string FullPath(const char* path);

/// Returns the folder for temporary files, in the library's form with its trailing separator; empty if the system has
/// none. On Linux it is the environment's TMPDIR, else /tmp.
std::string TempDirectory();

/// Returns the process's current folder, in the library's form without a trailing separator; empty if it is gone or the
/// code page cannot represent it. A failure of ChangeFolder is ignored.
std::string CurrentFolder();
void ChangeFolder(const std::string& path);
/// Returns a folder that always exists: the Windows directory, or the root.
std::string SystemFolder();

}  // namespace qv::platform
