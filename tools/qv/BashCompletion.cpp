#include "tools/qv/CommandLine.h"

#include <CLI/CLI.hpp>

namespace qv::tool {
namespace {

// The command that is being typed is the longest one that the words before lead to; behind "--" comes another program's
// own line.
constexpr std::string_view kHead = R"(# Completion of qv for bash, made from the tool's own list of commands.
_qv() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=qv word words=
    COMPREPLY=()
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [ "$word" != -- ] || return 0
        case "$command $word" in
)";
constexpr std::string_view kValues = R"() command+=" $word" ;;
        esac
    done
    case "$command $before" in
)";
constexpr std::string_view kWords = R"(        *)
            local options= commands=
            case $command in
)";
constexpr std::string_view kTail = R"(            esac
            [[ $current == -* ]] && words=$options || words=$commands
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -o default -F _qv qv)";

std::string Joined(const std::vector<std::string>& words) {
    return CLI::detail::join(words, " ");
}

std::vector<std::string> NamesOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
    return names;
}

std::vector<const CLI::Option*> NamedOptions(const CLI::App& command) {
    return command.get_options(
        [](const CLI::Option* option) { return option->nonpositional() && !option->get_group().empty(); });
}

Commands AllOf(const CLI::App& command) {
    Commands all = {&command};
    for (const CLI::App* const below : CommandsOf(command)) {
        const Commands more = AllOf(*below);
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

std::string ValueCases(const CLI::App& command) {
    std::string cases;
    for (const CLI::Option* const option : NamedOptions(command))
        for (const std::string& name : NamesOf(*option))
            if (const auto choices = ChoicesOf(*option); !choices.empty())
                cases += "        \"" + PathOf(command) + " " + name + "\") words='" + Joined(choices) + "' ;;\n";
            else if (!ValueOf(*option).empty())
                cases += "        \"" + PathOf(command) + " " + name + "\") ;;\n";
    return cases;
}

std::string WordCase(const CLI::App& command) {
    std::vector<std::string> options, commands;
    for (const CLI::Option* const option : NamedOptions(command))
        for (const std::string& name : NamesOf(*option)) options.push_back(name);
    for (const CLI::App* const below : CommandsOf(command)) commands.push_back(below->get_name());
    return "                \"" + PathOf(command) + "\") options='" + Joined(options) + "' commands='" +
           Joined(commands) + "' ;;\n";
}

}  // namespace

std::string BashCompletion(const CLI::App& app) {
    std::string paths, values, words;
    for (const CLI::App* const command : AllOf(app)) {
        if (command != &app) paths += (paths.empty() ? "            \"" : " | \"") + PathOf(*command) + '"';
        values += ValueCases(*command);
        words += WordCase(*command);
    }
    return std::string(kHead) + paths + std::string(kValues) + values + std::string(kWords) + words +
           std::string(kTail);
}

}  // namespace qv::tool
