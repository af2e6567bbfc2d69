#pragma once

#include <filesystem>
#include <string>

#include "qvcommon/framework/String.h"

namespace qv::tool {

/// Converts a path from the command line, which is in the process's code page and the library's form.
/// @throws CommandError if it is not valid in that code page.
std::filesystem::path PathFromArgument(const std::string& argument);

/// The inverse: the library's form in the process's code page, with "?" for characters that it lacks.
CString ArgumentFromPath(const std::filesystem::path& path);

/// Returns any argument in UTF-8. If it is not valid in the process's code page: its bytes on systems whose names are
/// bytes, and elsewhere @throws CommandError.
std::string Utf8FromArgument(const std::string& argument);
/// Returns a path in the library's form in UTF-8, with "/" as the separator.
std::string Utf8FromLibrary(const CString& path);

/// Returns the path in UTF-8 with "/" as the separator. On systems whose names are bytes, these bytes. A name without a
/// UTF-8 form becomes "?".
std::string Utf8(const std::filesystem::path& path);

}  // namespace qv::tool
