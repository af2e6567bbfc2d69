#include "tools/qv/CommandDescription.h"

namespace qv::tool {
namespace {

constexpr std::string_view kHead = R"(function __qv_is
    set -l command qv
    for word in (commandline -opc)[2..]
        if test "$word" = --
            return 1
        end
        switch "$command $word"
            case )";
constexpr std::string_view kTail = R"(
                set command "$command $word"
        end
    end
    test "$command" = "$argv[1]"
end
)";

std::string Quoted(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted + "'";
}

std::string PathsBelow(const CommandDescription& command) {
    std::string paths;
    for (const CommandDescription& below : command.commands) paths += Quoted(below.path) + " " + PathsBelow(below);
    return paths;
}

std::string LinesFor(const CommandDescription& command) {
    const std::string start = "complete -c qv -n '__qv_is \"" + command.path + "\"' ";
    std::string lines;
    if (!command.commands.empty()) lines += start + "-f\n";
    for (const CommandDescription& below : command.commands)
        lines += start + "-a " + below.name + " -d " + Quoted(below.description) + "\n";
    for (const OptionDescription& option : command.options) {
        if (option.operand) continue;
        lines += start;
        for (const std::string& name : option.names)
            lines += name.starts_with("--") ? "-l " + name.substr(2) + " " : "-s " + name.substr(1) + " ";
        if (!option.choices.empty())
            lines += "-x -a " + Quoted(Join(option.choices, " ")) + " ";
        else if (!option.value.empty())
            lines += "-r ";
        lines += "-d " + Quoted(option.description) + "\n";
    }
    lines += start + "-l help -s h -d 'Print help and exit'\n";
    for (const CommandDescription& below : command.commands) lines += LinesFor(below);
    return lines;
}

}  // namespace

std::string FishCompletion(const CommandDescription& tool) {
    return CompletionTitle("fish") + std::string(kHead) + PathsBelow(tool) + std::string(kTail) + LinesFor(tool);
}

}  // namespace qv::tool
