#pragma once

namespace qv::tool {

/// The tool's exit statuses; a command may have others.
enum ExitStatus { kDone = 0, kFailed = 1, kWrongUsage = 2 };

/// If the command line only asks for the version, as build scripts do, prints it without initializing the locale or the
/// parser and returns true.
bool PrintVersion(int argc, char** argv);

/// Parses the command line and runs its command; returns the exit status. The command's exceptions pass through.
int Run(int argc, char** argv);

}  // namespace qv::tool
