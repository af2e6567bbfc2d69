#pragma once

/// @file The one test whether a file or folder exists.

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>

namespace qv {

/// True when the system finds a file or folder of this name, in the library's form ("\" or the system's own separator). What
/// cannot be asked does not exist.
inline bool FileExists(std::string_view path) {
    std::string name(path);
    std::replace(name.begin(), name.end(), '\\', static_cast<char>(std::filesystem::path::preferred_separator));
    std::error_code error;
    return !name.empty() && std::filesystem::exists(name, error);
}

}  // namespace qv
