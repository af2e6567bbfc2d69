#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace qv::tool {

/// Explains a command line that the parser refuses: the wrong word, a suggestion, and where to find help.
std::string ExplainUsage(const CLI::App& app, const CLI::ParseError& error);
std::string ExplainUsage(const CLI::App& app, const std::string& problem);

/// Describes the problem with a word that is neither a subcommand nor an option of the command.
std::string ProblemWith(const std::string& word, const CLI::App& command);

}  // namespace qv::tool
