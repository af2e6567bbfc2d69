#pragma once

/// @file Opening, printing and showing documents by the user's desktop.

#include <string>

namespace qv::platform {

enum class DesktopVerb { Open, Print, Reveal };

/// Passes a document to the desktop; the path is absolute, in the library's form, and must exist. Returns false, with a
/// readable reason in `problem`, if the desktop has no program for it or the program fails. qvcommon/ShellVerbHelper.h
/// lists the programs and the maximum waiting time.
bool RunDesktopVerb(DesktopVerb verb, const std::string& path, std::string& problem);

}  // namespace qv::platform
