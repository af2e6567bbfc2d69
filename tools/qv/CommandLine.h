#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

/// The tool's command line as a whole, and what can be told of it. All of it is read from the parser itself, so nothing
/// here knows a command by name.
namespace qv::tool {

/// The tool's exit statuses, beside those that a command has of its own.
enum ExitStatus { kDone = 0, kFailed = 1, kWrongUsage = 2 };

/// Reads the command line and carries out its command; the exit status. What a command raises passes through.
int Run(int argc, char** argv);

using Commands = std::vector<const CLI::App*>;
/// The commands right below one, by name.
Commands CommandsOf(const CLI::App& command);
/// Those below an application that do something themselves, at whatever depth, in order: "text wrap", not "text".
Commands LeavesOf(const CLI::App& command);
/// "qv text wrap".
std::string PathOf(const CLI::App& command);

/// What an option takes, as help shows it: "MODE", "N", "{string,date}"; empty for a flag.
std::string ValueOf(const CLI::Option& option);
/// The values that it takes when these are a few words; none otherwise.
std::vector<std::string> ChoicesOf(const CLI::Option& option);

/// A script that makes bash complete the tool's commands, options and values, and file names elsewhere.
std::string BashCompletion(const CLI::App& app);
/// A manual page in the macros of man(7).
std::string ManPage(const CLI::App& app);

}  // namespace qv::tool
