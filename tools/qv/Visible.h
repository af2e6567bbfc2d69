#pragma once

#include <string>
#include <string_view>

#include "qvcommon/framework/Exception.h"

/// Names and texts from outside, so that they can be shown: what they hold may neither command a terminal nor pass for
/// something else.
namespace qv::tool {

/// A text for a terminal: control characters, and in UTF-8 bytes that are no part of a character, as "\n", "\t", "\033" and so
/// on. All else stays as it is.
std::string VisibleOnTerminal(std::string_view text);
/// The same where standard output is a terminal; elsewhere the text as it is, for other programs.
std::string ForOutput(std::string_view text);

/// UTF-8 text for a page: besides, blanks at its ends as U+2423, and marks of writing direction as "\u202E".
std::string VisibleOnPage(std::string_view utf8);

/// What an exception says, cut to 511 bytes.
std::string MessageOf(CException& error);

/// A path in the library's form, as the system writes it.
std::string Native(std::string_view path);

}  // namespace qv::tool
