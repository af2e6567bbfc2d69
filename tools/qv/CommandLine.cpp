#include "tools/qv/CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>

#include "tools/qv/Commands.h"

namespace qv::tool {
namespace {

// Help without what the parser's own has for programmers: the types of texts, and "REQUIRED" behind every position.
class HelpText : public CLI::Formatter {
public:
    std::string make_option_opts(const CLI::Option* option) const override {
        const std::string value = ValueOf(*option), first = option->get_default_str();
        if (option->get_positional() || value.empty()) return "";
        return " " + value + (first.empty() ? "" : " (" + first + ")");
    }
};

void AddPrinter(CLI::App& app, const char* option, std::string (*text)(const CLI::App&), const char* description) {
    const auto print = [&app, text] { throw CLI::CallForVersion(text(app), 0); };
    app.add_flag_callback(option, print, description);
}

// All commands, the version, and the two options that print what there is.
void SetUp(CLI::App& app) {
    app.name("qv");
    app.formatter(std::make_shared<HelpText>());
    app.require_subcommand(1);
    app.set_version_flag("--version", "qv " QV_VERSION, "Print the version and exit");
    app.footer(
        "Each command has its own --help, with an example: qv find --help\n"
        "Exit status: 0 done, 1 failed (the reason is on standard error), 2 wrong usage.");
    AddPrinter(app, "--bash-completion", &BashCompletion, "Print a completion script for bash and exit");
    AddPrinter(app, "--man-page", &ManPage, "Print the manual page and exit");
    for (const auto add : {AddArchiveCommands, AddBackup, AddBmp, AddCopy, AddCrc, AddDelete, AddEmf, AddFind,
                           AddListen, AddLockCommand, AddLog, AddReport, AddSend, AddText, AddWatch, AddXml})
        add(Command(app));
}

}  // namespace

int Run(int argc, char** argv) {
    CLI::App app{"The QvCommon command-line companion"};
    SetUp(app);
    try {
        app.parse(argc, argv);
        return kDone;
    } catch (const Ended& ended) {
        return ended.status;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kDone : kWrongUsage;
    }
}

Commands CommandsOf(const CLI::App& command) {
    Commands commands = command.get_subcommands([](const CLI::App*) { return true; });
    std::ranges::sort(commands, {}, &CLI::App::get_name);
    return commands;
}

Commands LeavesOf(const CLI::App& command) {
    Commands leaves;
    for (const CLI::App* const below : CommandsOf(command)) {
        const Commands found = LeavesOf(*below);
        leaves.insert(leaves.end(), found.begin(), found.end());
        if (found.empty()) leaves.push_back(below);
    }
    return leaves;
}

std::string PathOf(const CLI::App& command) {
    const CLI::App* const parent = command.get_parent();
    return parent ? PathOf(*parent) + " " + command.get_name() : command.get_name();
}

std::string ValueOf(const CLI::Option& option) {
    if (!option.get_option_text().empty()) return option.get_option_text();
    const std::string type = option.get_type_name();
    if (option.get_type_size() == 0 || type.empty()) return "";
    if (type.find('{') != type.npos) return type.substr(type.find('{'));
    return type.starts_with("TEXT") ? "TEXT" : "N";
}

// The parser keeps them in its description of the type only: "TEXT:{a,b}" and "INT:value in {a->0,b->1} OR {0,1}".
std::vector<std::string> ChoicesOf(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const std::size_t open = type.find('{');
    if (open == type.npos) return {};
    std::vector<std::string> choices = CLI::detail::split(type.substr(open + 1, type.find('}') - open - 1), ',');
    for (std::string& choice : choices) choice = choice.substr(0, choice.find("->"));
    return choices;
}

}  // namespace qv::tool
