#pragma once

#include <string>
#include <string_view>

namespace qv::platform {

/// Appends one argument to a command line so that the parsing rules of the Windows C run time restore it unchanged:
/// quoted if it is empty or contains blanks, tabs or quotes, backslashes doubled only before a quote. In the system's
/// wide form, since bytes of a double-byte code page may look like backslashes.
void AppendArgument(std::wstring& commandLine, std::wstring_view argument);

}  // namespace qv::platform
