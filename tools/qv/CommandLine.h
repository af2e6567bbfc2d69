#pragma once

namespace qv::tool {

/// The tool's exit statuses, beside those that a command has of its own.
enum ExitStatus { kDone = 0, kFailed = 1, kWrongUsage = 2 };

/// Prints the version where that is all the line asks for, as build scripts do: it needs neither the locale nor the parser.
/// False for every other line.
bool PrintVersion(int argc, char** argv);

/// Reads the command line and carries out its command; the exit status. What a command raises passes through.
int Run(int argc, char** argv);

}  // namespace qv::tool
