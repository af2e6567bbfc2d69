#include "tools/qv/CommandDescription.h"

namespace qv::tool {
namespace {

constexpr std::string_view kRest = R"(.SH EXIT STATUS
.TP
.B 0
Done.
.TP
.B 1
Failed. The reason is on standard error; nothing is printed if the reader of a pipe has closed it.
.TP
.B 2
Wrong usage.
.P
.B qv lock
exits with the status of the command that it ran; 127 if that is missing, 126 if it cannot be started.
.SH ENVIRONMENT
.TP
.B LC_ALL, LC_CTYPE, LANG
The locale. Its character set is that of file names and text; UTF-8 if no locale is set, and in the C locale.
.TP
.B TMPDIR
The folder for temporary files.
.TP
.B TZ
The time zone for local times.
.SH FILES
.TP
.I NAME.lck, NAME.lid
The lock of the document NAME.ext, and the name of its holder. They may remain if the holder is killed, and do not block the next
holder.
.TP
.I NAME.bak
The backup of NAME.ext.
.TP
.I .qv1.tmp
An incomplete file or archive, on file systems without unnamed files. The next command removes it.
.SH JSON
With
.B \-\-json
each line is one object (RFC 8259) in UTF-8. Numbers are JSON numbers, and times are in UTC, as "2026-11-22T09:30:00Z". In a name
or message that is not valid in the locale's character set, U+FFFD replaces the invalid bytes, and a second field, such as
"pathBytes" for "path", has all bytes as hexadecimal digits. Unknown fields are omitted.
.TP
.B qv bmp info
"format" ("BMP", "PNG" or "ICO"), and the values that it prints, as numbers, with names such as "headerSize" and "bitsPerPixel".
.TP
.B qv crc
"path", "crc32" (a string of 8 digits); with
.B \-\-check
"path", "matches" (true or false), "list".
.TP
.B qv emf list
"number" (from 1), "name", "size" (bytes); in the first object "bounds", "frame" (4 numbers each), "device", "millimetres" (2 each)
and "description".
.TP
.B qv find
"path" (from FOLDER), "depth", "type" ("file", "folder" or "link"), "size" (bytes), "modified".
.TP
.B qv list
"name", "size" (bytes), "modified" (local time, as the archive has it, without a zone).
.TP
.B qv listen
"name", "text", "time".
.TP
.B qv watch
"folder", "time".
.SH NOTES
Where - means a standard stream, use ./- for a file of that name. Long operations show their progress if standard error is
a terminal.
.SH SEE ALSO
.BR find (1),
.BR cabextract (1),
.BR rhash (1),
.BR flock (1))";

// Returns the text literally: no dash may become a hyphen, no first character a request.
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

// Returns a name and the option's value.
std::string With(const std::string& name, const OptionDescription& option) {
    return option.operand || option.value.empty() ? name : name + " " + option.value;
}

// Options come first: what follows the operands may be another program's command line.
std::string Usage(const CommandDescription& command) {
    std::string usage = command.path;
    for (const bool operands : {false, true})
        for (const OptionDescription& option : command.options)
            if (option.operand == operands) {
                const std::string text = With(option.names.front(), option) + (operands && option.many ? "..." : "");
                usage += option.required ? " " + text : " [" + text + "]";
            }
    return usage;
}

std::string Section(const CommandDescription& command) {
    std::string text =
        ".SS " + Plain(command.path) + "\n.B " + Plain(Usage(command)) + "\n.P\n" + Plain(command.description) + ".\n";
    for (const bool operands : {true, false})
        for (const OptionDescription& option : command.options)
            if (option.operand == operands)
                text += ".TP\n.B " + Plain(With(Join(option.names, ", "), option)) + "\n" + Plain(option.description) +
                        ".\n";
    return text + ".P\n.nf\n" + Plain(command.footer) + "\n.fi\n";
}

// Collects the commands that have no subcommands: "text wrap", not "text".
void AddLeaves(const CommandDescription& command, std::vector<const CommandDescription*>& leaves) {
    if (command.commands.empty()) leaves.push_back(&command);
    for (const CommandDescription& below : command.commands) AddLeaves(below, leaves);
}

}  // namespace

std::string ManPage(const CommandDescription& tool) {
    std::vector<const CommandDescription*> leaves;
    AddLeaves(tool, leaves);
    std::string text = ".TH QV 1 \"\" \"QvCommon " QV_VERSION
                       "\" \"User Commands\"\n"
                       ".SH NAME\nqv \\- " +
                       Plain(tool.description) +
                       "\n"
                       ".SH SYNOPSIS\n.nf\n.B qv [\\-\\-help] [\\-\\-version]\n";
    for (const CommandDescription* const command : leaves) text += ".B " + Plain(Usage(*command)) + "\n";
    text += ".fi\n.SH COMMANDS\n";
    for (const CommandDescription* const command : leaves) text += Section(*command);
    return text + std::string(kRest);
}

}  // namespace qv::tool
