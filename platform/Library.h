#pragma once

/// @file Shared libraries that a program loads while it runs.

#include <string>
#include <string_view>
#include <vector>

namespace qv::platform {

using LibraryHandle = void*;

/// Loads the library at an absolute path, in the library's form, with all that it needs resolved at once. Its names are
/// not offered to other libraries. What it needs is searched for beside it (on Linux where it says so) and among the
/// system's libraries, never in the current folder. Null, and the system's text in `problem`, when that fails.
LibraryHandle OpenLibrary(const char* path, std::string& problem);
/// The address of an exported name; null when the library has none.
void* FindInLibrary(LibraryHandle library, const char* name);
/// Nothing of the library may be used afterwards.
void CloseLibrary(LibraryHandle library);

/// The files in which a library of a name may be, best first: NAME.dll, or NAME.so and libNAME.so.
std::vector<std::string> LibraryFileNames(std::string_view name);

}  // namespace qv::platform
