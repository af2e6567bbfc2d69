#pragma once

#include <cstdlib>
#include <string>

/// Runs a command of the shell. False when it fails, also because a program is not installed.
inline bool RunCommand(const std::string& command) {
    return std::system(command.c_str()) == 0;
}

/// The command that starts the tool of this build.
inline std::string Qv(const std::string& arguments) {
    return "'" QV_TOOL "' " + arguments;
}
