#include "tools/qv/CommandDescription.h"

namespace qv::tool {
namespace {

constexpr std::string_view kHead = R"(_qv() {
    local command=qv word
    local -a options commands values
    for word in ${words[2,CURRENT-1]}; do
        [[ $word != -- ]] || { _normal; return }
        case "$command $word" in
)";
constexpr std::string_view kValues = R"() command+=" $word" ;;
        esac
    done
    case "$command $words[CURRENT-1]" in
)";
constexpr std::string_view kWords = R"(    esac
    case $command in
)";
constexpr std::string_view kTail = R"(    esac
    if [[ $words[CURRENT] == -* ]]; then
        _describe option options
    elif (( $#commands )); then
        _describe command commands
    else
        _files
    fi
}
if [[ $zsh_eval_context[-1] == loadautofunc ]]; then
    _qv "$@"
else
    compdef _qv qv
fi)";

std::string Quoted(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text)
        if (c == '\'')
            quoted += "'\\''";
        else
            quoted += c;
    return quoted + "'";
}

// Returns a word and its description, with colons in the word escaped.
std::string Described(const std::string& word, std::string_view description) {
    std::string text = word + ":";
    for (const char c : description) {
        if (c == ':' || c == '\\') text += '\\';
        text += c;
    }
    return Quoted(text);
}

struct Cases {
    std::string paths, values, words;

    void Add(const CommandDescription& command) {
        std::string options = Described("--help", "Print help and exit"), commands;
        for (const OptionDescription& option : command.options) {
            if (option.operand) continue;
            for (const std::string& name : option.names) {
                if (name.starts_with("--")) options += " " + Described(name, option.description);
                if (!option.choices.empty())
                    values += "        (\"" + command.path + " " + name + "\") values=(" + Join(option.choices, " ") +
                              "); compadd -a values; return ;;\n";
                else if (!option.value.empty())
                    values += "        (\"" + command.path + " " + name + "\") _files; return ;;\n";
            }
        }
        for (const CommandDescription& below : command.commands) {
            commands += " " + Described(below.name, below.description);
            paths += (paths.empty() ? "            (\"" : "|\"") + below.path + '"';
        }
        words += "        (\"" + command.path + "\")\n            options=(" + options + ")\n            commands=(" +
                 commands + ") ;;\n";
        for (const CommandDescription& below : command.commands) Add(below);
    }
};

}  // namespace

std::string ZshCompletion(const CommandDescription& tool) {
    Cases cases;
    cases.Add(tool);
    return "#compdef qv\n" + CompletionTitle("zsh") + std::string(kHead) + cases.paths + std::string(kValues) +
           cases.values + std::string(kWords) + cases.words + std::string(kTail);
}

}  // namespace qv::tool
