#pragma once

/// @file An INI file (platform/IniText.h) that is read and changed concurrently by threads and processes.

#include <functional>
#include <string>

#include "platform/AtomicFile.h"

namespace qv::platform {

/// Larger files are rejected.
inline constexpr std::size_t kLargestIniFile = std::size_t{16} << 20;

/// Reads the whole text: one version of the file, never a mix. A missing file or folder gives an empty text. Fails if
/// the file cannot be read, is not a regular file (AccessDenied), or is too large (InvalidFile).
Status ReadIniFile(const std::string& path, std::string& text);

/// Replaces the text by `change(text)`, atomically. Writers are serialized: no change is applied to a text that another
/// one has replaced. A text that does not change is not written. The folder must exist. `access` applies to a new file; an
/// existing one keeps its attributes, and a link is followed.
///
/// Writers lock a file beside it with ".lock" appended to the name, which is not deleted. On file systems without locks
/// they do not wait, and the last one wins. `change` must not read or change the same file; an exception from it leaves
/// the file unchanged.
Status ChangeIniFile(const std::string& path, const std::function<std::string(std::string text)>& change,
                     Access access = Access::Owner);

}  // namespace qv::platform
