#pragma once

#include <string>
#include <string_view>

namespace qv::platform {

/// Appends one argument to a command line so that the parsing rules of the Windows C run time restore it unchanged:
/// quoted if it is empty or contains blanks, tabs or quotes, backslashes doubled only before a quote.
void AppendArgument(std::string& commandLine, std::string_view argument);

}  // namespace qv::platform
