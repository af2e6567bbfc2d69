#include "tools/qv/CommandLine.h"

#include <CLI/CLI.hpp>

namespace qv::tool {
namespace {

constexpr std::string_view kRest = R"(.SH EXIT STATUS
.TP
.B 0
Done.
.TP
.B 1
Failed. The reason is on standard error; nothing is said when it was the reader of a pipe who had enough.
.TP
.B 2
Wrong usage.
.P
.B qv lock
ends with the status of the command that it has run.
.SH NOTES
Paths may use the system's separator or a backslash. Texts are in the code page of the locale; in the C locale that is
Windows-1252. Long work shows its progress when standard error is a terminal.)";

// Text as it is: no dash may become a hyphen, no first character a request.
std::string Plain(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool starts = i == 0 || text[i - 1] == '\n';
        if (starts && (text[i] == '.' || text[i] == '\'')) out += "\\&";
        if (text[i] == '\\')
            out += "\\e";
        else if (text[i] == '-')
            out += "\\-";
        else if (text[i] == '\'')
            out += "\\(aq";
        else
            out += text[i];
    }
    return out;
}

std::vector<const CLI::Option*> Shown(const CLI::App& command, bool positional) {
    return command.get_options([positional](const CLI::Option* option) {
        return option->get_positional() == positional && !option->get_group().empty();
    });
}

std::string NameOf(const CLI::Option& option) {
    if (option.get_positional()) return option.get_name(true);
    const std::string value = ValueOf(option);
    return CLI::detail::find_and_replace(option.get_name(false, true), ",", ", ") + (value.empty() ? "" : " " + value);
}

std::string ShortName(const CLI::Option& option) {
    const std::string value = ValueOf(option);
    const std::string name =
        option.get_snames().empty() ? "--" + option.get_lnames().front() : "-" + option.get_snames().front();
    return value.empty() ? name : name + " " + value;
}

// The options first: what follows the names may be another program's line.
std::string Usage(const CLI::App& command) {
    std::string usage = PathOf(command);
    const auto add = [&usage](const CLI::Option& option, const std::string& text) {
        usage += option.get_required() ? " " + text : " [" + text + "]";
    };
    for (const CLI::Option* const option : Shown(command, false))
        if (option != command.get_help_ptr()) add(*option, ShortName(*option));
    for (const CLI::Option* const option : Shown(command, true))
        add(*option, option->get_name(true) + (option->get_expected_max() > 1 ? "..." : ""));
    return usage;
}

std::string Section(const CLI::App& command) {
    std::string text = ".SS " + Plain(PathOf(command)) + "\n.B " + Plain(Usage(command)) + "\n.P\n" +
                       Plain(command.get_description()) + ".\n";
    for (const bool positional : {true, false})
        for (const CLI::Option* const option : Shown(command, positional))
            if (option != command.get_help_ptr())
                text += ".TP\n.B " + Plain(NameOf(*option)) + "\n" + Plain(option->get_description()) + ".\n";
    return text + ".P\n.nf\n" + Plain(command.get_footer()) + "\n.fi\n";
}

}  // namespace

std::string ManPage(const CLI::App& app) {
    std::string text = ".TH QV 1 \"\" \"QvCommon " QV_VERSION
                       "\" \"User Commands\"\n"
                       ".SH NAME\nqv \\- " +
                       Plain(app.get_description()) +
                       "\n"
                       ".SH SYNOPSIS\n.nf\n.B qv [\\-\\-help] [\\-\\-version]\n";
    for (const CLI::App* const command : LeavesOf(app)) text += ".B " + Plain(Usage(*command)) + "\n";
    text += ".fi\n.SH COMMANDS\n";
    for (const CLI::App* const command : LeavesOf(app)) text += Section(*command);
    return text + std::string(kRest);
}

}  // namespace qv::tool
