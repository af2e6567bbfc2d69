#pragma once

#include <string>
#include <vector>

/// A description of the tool's command line, in plain data for generators. It is derived from the parser, so nothing
/// here refers to a particular command.
namespace qv::tool {

struct OptionDescription {
    /// "-o" and "--output"; an operand has one, without dashes.
    std::vector<std::string> names;
    /// The value as the help shows it: "MODE", "N", "{string,date}"; empty for a flag.
    std::string value;
    /// The possible values, if they are a few words.
    std::vector<std::string> choices;
    std::string description;
    bool operand, required, many;
};

struct CommandDescription {
    /// "qv text wrap", whose last word is the name.
    std::string path, name;
    std::string description, footer;
    /// Includes operands, in order; excludes --help, which every command has.
    std::vector<OptionDescription> options;
    /// The direct subcommands, sorted by name.
    std::vector<CommandDescription> commands;
};

inline std::string Join(const std::vector<std::string>& words, const char* between) {
    std::string line;
    for (const std::string& word : words) (line += line.empty() ? "" : between) += word;
    return line;
}

/// Returns the first comment of a script.
inline std::string CompletionTitle(const std::string& shell) {
    return "# Completion of qv for " + shell + ", made from the tool's own list of commands.\n";
}

/// Returns a script that makes bash complete the tool's commands, options and values, and file names elsewhere. The
/// command being typed is the longest that the previous words name; after "--" another program's command line follows.
std::string BashCompletion(const CommandDescription& tool);
/// The same for fish and zsh, with descriptions.
std::string FishCompletion(const CommandDescription& tool);
std::string ZshCompletion(const CommandDescription& tool);
/// Returns a manual page in the macros of man(7).
std::string ManPage(const CommandDescription& tool);

}  // namespace qv::tool
