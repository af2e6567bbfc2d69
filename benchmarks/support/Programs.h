#pragma once

#include <cstdlib>
#include <string>

/// Runs a shell command. Returns false if it fails, also if a program is not installed.
inline bool RunCommand(const std::string& command) {
    return std::system(command.c_str()) == 0;
}

/// Returns the command that starts the tool of this build.
inline std::string Qv(const std::string& arguments) {
    return "'" QV_TOOL "' " + arguments;
}
