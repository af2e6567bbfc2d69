#pragma once

/// @file An INI file (platform/IniText.h) that threads and processes read and change at the same time.

#include <functional>
#include <string>

#include "platform/Status.h"

namespace qv::platform {

/// Larger files are neither read nor written.
inline constexpr std::size_t kLargestIniFile = std::size_t{16} << 20;

/// The whole text: one version of the file, never parts of two. A missing file or folder gives an empty text. Fails for
/// what cannot be read, is no regular file (AccessDenied), or is too large (InvalidFile).
Status ReadIniFile(const std::string& path, std::string& text);

/// Puts `change(text)` in the place of the text, all of it or nothing. Writers wait for each other: no change is made to a
/// text that another one has replaced. A text that does not change is not written. The folder must exist; a new file is
/// the user's alone, an existing one keeps its attributes, and a link leads to the file that is changed.
///
/// Writers take turns by a file beside it with ".lock" added to the name, which stays. On file systems without locks they do not
/// wait, and the last one wins. `change` must not read or change the same file; what it raises leaves the file as it was.
Status ChangeIniFile(const std::string& path, const std::function<std::string(std::string text)>& change);

}  // namespace qv::platform
