#include "platform/CommandLine.h"

namespace qv::platform {

void AppendArgument(std::wstring& commandLine, std::wstring_view argument) {
    if (!commandLine.empty()) commandLine += L' ';
    if (!argument.empty() && argument.find_first_of(L" \t\n\v\"") == argument.npos) {
        commandLine += argument;
        return;
    }
    commandLine += L'"';
    std::size_t backslashes = 0;
    for (const wchar_t c : argument) {
        if (c == L'"') commandLine.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        commandLine += c;
    }
    commandLine.append(backslashes, L'\\') += L'"';
}

}  // namespace qv::platform
