#include "tools/qv/CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>

#include "tools/qv/CommandDescription.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Operands.h"
#include "tools/qv/Usage.h"

namespace qv::tool {
namespace {

constexpr const char* kVersion = "qv " QV_VERSION;

std::string ValueOf(const CLI::Option& option) {
    if (!option.get_option_text().empty()) return option.get_option_text();
    const std::string type = option.get_type_name();
    if (option.get_type_size() == 0 || type.empty()) return "";
    if (type.find('{') != type.npos) return type.substr(type.find('{'));
    return type.starts_with("TEXT") ? "TEXT" : "N";
}

// The parser has them only in its description of the type: "TEXT:{a,b}" and "INT:value in {a->0,b->1} OR {0,1}".
std::vector<std::string> ChoicesOf(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const std::size_t open = type.find('{');
    if (open == type.npos) return {};
    std::vector<std::string> choices = CLI::detail::split(type.substr(open + 1, type.find('}') - open - 1), ',');
    for (std::string& choice : choices) choice = choice.substr(0, choice.find("->"));
    return choices;
}

std::vector<std::string> NamesOf(const CLI::Option& option) {
    if (option.get_positional()) return {option.get_name(true)};
    return CLI::detail::split(option.get_name(false, true), ',');
}

OptionDescription Describe(const CLI::Option& option) {
    return {.names = NamesOf(option),
            .value = ValueOf(option),
            .choices = ChoicesOf(option),
            .description = option.get_description(),
            .operand = option.get_positional(),
            .required = option.get_required(),
            .many = option.get_expected_max() > 1};
}

CommandDescription Describe(const CLI::App& command, const std::string& parent = "") {
    CommandDescription described;
    described.name = command.get_name();
    described.path = parent + described.name;
    described.description = command.get_description();
    described.footer = command.get_footer();
    for (const CLI::Option* const option : command.get_options())
        if (option != command.get_help_ptr()) described.options.push_back(Describe(*option));
    for (const CLI::App* const below : command.get_subcommands([](const CLI::App*) { return true; }))
        described.commands.push_back(Describe(*below, described.path + ' '));
    std::ranges::sort(described.commands, {}, &CommandDescription::name);
    return described;
}

// Omits what the parser's own help shows for programmers: the types of texts, and "REQUIRED" after every positional.
class HelpText : public CLI::Formatter {
public:
    std::string make_option_opts(const CLI::Option* option) const override {
        const std::string value = ValueOf(*option), first = option->get_default_str();
        if (option->get_positional() || value.empty()) return "";
        return " " + value + (first.empty() ? "" : " (" + first + ")");
    }
};

void AddPrinter(CLI::App& app, const char* option, std::string (*text)(const CommandDescription&),
                const char* description) {
    const auto print = [&app, text] { throw CLI::CallForVersion(text(Describe(app)), 0); };
    app.add_flag_callback(option, print, description);
}

// "qv help text wrap" is equivalent to "qv text wrap --help".
void AddHelp(CLI::App& app) {
    CLI::App& help = *app.add_subcommand("help", "Show the help of a command");
    const auto words = std::make_shared<std::vector<std::string>>();
    help.add_option("COMMAND", *words, "The command; by default all commands")->transform(Unmarked);
    Command(help).AddExample("qv help text wrap");
    help.callback([&app, words] {
        const CLI::App* command = &app;
        std::string name = app.get_name();
        for (const std::string& word : *words) {
            const auto below = command->get_subcommands([&](const CLI::App* each) { return each->get_name() == word; });
            if (below.empty()) throw WrongUsage(ProblemWith(word, *command));
            command = below.front();
            name += " " + word;
        }
        // CLI::App::help() would show the help of the subcommand on the line, which is this one.
        std::cout << command->get_formatter()->make_help(command, name, CLI::AppFormatMode::Normal);
    });
}

struct Entry {
    const char* names;  // separated by spaces
    void (*add)(Command);
};

constexpr Entry kCommands[] = {
    {" pack unpack list ", AddArchiveCommands},
    {" backup ", AddBackup},
    {" bmp ", AddBmp},
    {" chart ", AddChart},
    {" copy ", AddCopy},
    {" crc ", AddCrc},
    {" delete ", AddDelete},
    {" emf ", AddEmf},
    {" find ", AddFind},
    {" listen ", AddListen},
    {" lock ", AddLockCommand},
    {" log ", AddLog},
    {" report ", AddReport},
    {" send ", AddSend},
    {" text ", AddText},
    {" watch ", AddWatch},
    {" xml ", AddXml},
};

// If the line begins with a command's name, only that command is added: for a short command, the parser takes most of
// the time.
void AddCommands(CLI::App& app, std::string_view first) {
    const std::string name = " " + std::string(first) + " ";
    const auto* const named = std::ranges::find_if(kCommands, [&](const Entry& entry) {
        return std::string_view(entry.names).find(name) != std::string_view::npos;
    });
    if (named != std::end(kCommands)) return named->add(Command(app));
    for (const Entry& entry : kCommands) entry.add(Command(app));
    AddHelp(app);
}

// Sets up the version, the options that print generated texts, and the commands.
void SetUp(CLI::App& app, std::string_view first) {
    app.name("qv");
    app.formatter(std::make_shared<HelpText>());
    app.require_subcommand(1);
    app.allow_windows_style_options(false);  // commands inherit it
    app.set_version_flag("--version", kVersion, "Print the version and exit");
    AddPrinter(app, "--bash-completion", &BashCompletion, "Print a completion script for bash and exit");
    AddPrinter(app, "--fish-completion", &FishCompletion, "Print a completion script for fish and exit");
    AddPrinter(app, "--zsh-completion", &ZshCompletion, "Print a completion script for zsh and exit");
    AddPrinter(app, "--man-page", &ManPage, "Print the manual page and exit");
    AddCommands(app, first);
    app.footer(  // last, since commands inherit it
        "Each command has its own --help, with an example: qv find --help\n"
        "Exit status: 0 done, 1 failed (the reason is on standard error), 2 wrong usage.");
}

}  // namespace

bool PrintVersion(int argc, char** argv) {
    const bool isAsked = argc == 2 && std::string_view(argv[1]) == "--version";
    if (isAsked) std::cout << kVersion << '\n';
    return isAsked;
}

int Run(int argc, char** argv) {
    CLI::App app{"The QvCommon command-line companion"};
    SetUp(app, argc > 1 ? argv[1] : "");
    try {
        app.parse(MarkOperands(argc, argv));
        return kDone;
    } catch (const CommandExit& ended) {
        return ended.status;
    } catch (const WrongUsage& error) {
        std::cerr << ExplainUsage(app, error.what());
        return kWrongUsage;
    } catch (const CLI::Success& success) {
        return app.exit(success);
    } catch (const CLI::ParseError& error) {
        std::cerr << ExplainUsage(app, error);
        return kWrongUsage;
    }
}

}  // namespace qv::tool
