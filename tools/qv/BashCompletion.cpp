#include "tools/qv/CommandDescription.h"

namespace qv::tool {
namespace {

constexpr std::string_view kHead = R"(_qv() {
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

// Returns the long names; a single letter needs no completion.
std::vector<std::string> LongNamesOf(const OptionDescription& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.names)
        if (name.starts_with("--")) names.push_back(name);
    return names;
}

std::string ValueCases(const CommandDescription& command) {
    std::string cases;
    for (const OptionDescription& option : command.options)
        for (const std::string& name : LongNamesOf(option))
            if (!option.choices.empty())
                cases +=
                    "        \"" + command.path + " " + name + "\") words='" + Join(option.choices, " ") + "' ;;\n";
            else if (!option.value.empty())
                cases += "        \"" + command.path + " " + name + "\") ;;\n";
    return cases;
}

std::string WordCase(const CommandDescription& command) {
    std::vector<std::string> options = {"--help"}, commands;
    for (const OptionDescription& option : command.options)
        for (const std::string& name : LongNamesOf(option)) options.push_back(name);
    for (const CommandDescription& below : command.commands) commands.push_back(below.name);
    return "                \"" + command.path + "\") options='" + Join(options, " ") + "' commands='" +
           Join(commands, " ") + "' ;;\n";
}

struct Cases {
    std::string paths, values, words;

    void Add(const CommandDescription& command) {
        values += ValueCases(command);
        words += WordCase(command);
        for (const CommandDescription& below : command.commands) {
            paths += (paths.empty() ? "            \"" : " | \"") + below.path + '"';
            Add(below);
        }
    }
};

}  // namespace

std::string BashCompletion(const CommandDescription& tool) {
    Cases cases;
    cases.Add(tool);
    return CompletionTitle("bash") + std::string(kHead) + cases.paths + std::string(kValues) + cases.values +
           std::string(kWords) + cases.words + std::string(kTail);
}

}  // namespace qv::tool
