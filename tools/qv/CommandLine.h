#pragma once

namespace qv::tool {

/// The tool's exit statuses, beside those that a command has of its own.
enum ExitStatus { kDone = 0, kFailed = 1, kWrongUsage = 2 };

/// Reads the command line and carries out its command; the exit status. What a command raises passes through.
int Run(int argc, char** argv);

}  // namespace qv::tool
