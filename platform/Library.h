#pragma once

/// @file Shared libraries loaded at run time.

#include <string>
#include <string_view>
#include <vector>

namespace qv::platform {

using LibraryHandle = void*;

/// Loads the library at an absolute path, in the library's form, and resolves all symbols at once. Its symbols are not
/// visible to other libraries. Its dependencies are searched for beside it (on Linux if it says so) and among the
/// system's libraries, never in the current folder. Returns null, with the system's error text in `problem`, on
/// failure.
LibraryHandle OpenLibrary(const char* path, std::string& problem);
/// Returns the address of an exported name; null if the library does not export it.
void* FindInLibrary(LibraryHandle library, const char* name);
/// Unloads the library; pointers into it are then invalid.
void CloseLibrary(LibraryHandle library);

/// Returns the possible file names of a library, best first: NAME.dll, or NAME.so and libNAME.so.
std::vector<std::string> LibraryFileNames(std::string_view name);

}  // namespace qv::platform
