#pragma once

#include <filesystem>
#include <string>

#include "qvcommon/framework/String.h"

namespace qv::tool {

/// A path as the command line gave it: in the process's code page, in the library's form.
/// @throws Failed when it is not text of that code page.
std::filesystem::path PathFromArgument(const std::string& argument);

/// The way back: the library's form in the process's code page, "?" for what that does not have.
CString ArgumentFromPath(const std::filesystem::path& path);

/// Any argument in UTF-8. @throws Failed when it is not text of the process's code page.
std::string Utf8FromArgument(const std::string& argument);
/// The names of a path in the library's form in UTF-8, with "/" between them.
std::string Utf8FromLibrary(const CString& path);

/// The path's text in UTF-8 with "/" between its names. On systems whose names are bytes it is these bytes. A name that
/// has no UTF-8 form is "?".
std::string Utf8(const std::filesystem::path& path);

}  // namespace qv::tool
