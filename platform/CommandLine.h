#pragma once

#include <string>
#include <string_view>

namespace qv::platform {

/// Appends one argument to a command line so that the splitting rules of the Windows C run time give it back unchanged:
/// quoted where it is empty or holds blanks, tabs or quotes, backslashes doubled only before a quote.
void AppendArgument(std::string& commandLine, std::string_view argument);

}  // namespace qv::platform
