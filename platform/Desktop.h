#pragma once

/// @file What the user's desktop does with documents.

#include <string>

namespace qv::platform {

enum class DesktopVerb { Open, Print, Reveal };

/// Hands a document to the desktop; the path is absolute, in the library's form, and exists. False, and the reason for
/// people in `problem`, when the desktop has no program for it or that refuses. qvcommon/ShellVerbHelper.h names the
/// programs, and says how long this waits.
bool HandToDesktop(DesktopVerb verb, const std::string& path, std::string& problem);

}  // namespace qv::platform
