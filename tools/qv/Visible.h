#pragma once

#include <string>
#include <string_view>

#include "qvcommon/framework/Exception.h"

/// Escaping of untrusted names and texts for display: their content must neither control a terminal nor be mistaken for
/// other text.
namespace qv::tool {

/// Escapes a text for a terminal: control characters, and in UTF-8 invalid bytes, become "\n", "\t", "\033" and so on.
/// Everything else is unchanged.
std::string VisibleOnTerminal(std::string_view text);
/// The same if standard output is a terminal; otherwise the unchanged text, for other programs.
std::string ForOutput(std::string_view text);

/// Escapes UTF-8 text for a page: additionally, spaces at its ends become U+2423, and bidirectional marks "\u202E".
std::string VisibleOnPage(std::string_view utf8);

/// Returns an exception's message, truncated to 511 bytes.
std::string MessageOf(CException& error);

/// Converts a path from the library's form to the system's.
std::string Native(std::string_view path);

}  // namespace qv::tool
