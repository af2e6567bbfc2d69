#pragma once

#include <string>
#include <vector>

/// What the tool's command line consists of, in plain words for those who write about it. It is told by the parser, so
/// nothing here knows a command by name.
namespace qv::tool {

struct OptionDescription {
    /// "-o" and "--output"; an operand has one, without dashes.
    std::vector<std::string> names;
    /// What it takes, as help shows it: "MODE", "N", "{string,date}"; empty for a flag.
    std::string value;
    /// The values that it takes, when these are a few words.
    std::vector<std::string> choices;
    std::string description;
    bool operand, required, many;
};

struct CommandDescription {
    /// "qv text wrap", of which the last word is the name.
    std::string path, name;
    std::string description, footer;
    /// Operands too, in order; not --help, which every command has.
    std::vector<OptionDescription> options;
    /// Those right below it, by name.
    std::vector<CommandDescription> commands;
};

inline std::string Join(const std::vector<std::string>& words, const char* between) {
    std::string line;
    for (const std::string& word : words) (line += line.empty() ? "" : between) += word;
    return line;
}

/// The first comment of a script.
inline std::string CompletionTitle(const std::string& shell) {
    return "# Completion of qv for " + shell + ", made from the tool's own list of commands.\n";
}

/// A script that makes bash complete the tool's commands, options and values, and file names elsewhere. The command
/// that is being typed is the longest one that the words before lead to; after "--" comes another program's line.
std::string BashCompletion(const CommandDescription& tool);
/// The same for fish and for zsh, with descriptions.
std::string FishCompletion(const CommandDescription& tool);
std::string ZshCompletion(const CommandDescription& tool);
/// A manual page in the macros of man(7).
std::string ManPage(const CommandDescription& tool);

}  // namespace qv::tool
