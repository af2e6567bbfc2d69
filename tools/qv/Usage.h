#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace qv::tool {

/// What a user is told about a command line that the parser refuses: the word that is wrong, what may have been meant, and
/// where help is.
std::string ExplainUsage(const CLI::App& app, const CLI::ParseError& error);
std::string ExplainUsage(const CLI::App& app, const std::string& problem);

/// The problem with a word that is neither a command below this one nor an option of it.
std::string ProblemWith(const std::string& word, const CLI::App& command);

}  // namespace qv::tool
