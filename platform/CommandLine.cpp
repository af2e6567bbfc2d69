#include "platform/CommandLine.h"

namespace qv::platform {

void AppendArgument(std::string& commandLine, std::string_view argument) {
    if (!commandLine.empty()) commandLine += ' ';
    if (!argument.empty() && argument.find_first_of(" \t\n\v\"") == argument.npos) {
        commandLine += argument;
        return;
    }
    commandLine += '"';
    std::size_t backslashes = 0;
    for (const char c : argument) {
        if (c == '"') commandLine.append(backslashes + 1, '\\');
        backslashes = c == '\\' ? backslashes + 1 : 0;
        commandLine += c;
    }
    commandLine.append(backslashes, '\\') += '"';
}

}  // namespace qv::platform
