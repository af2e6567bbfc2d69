#pragma once

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

/// The building blocks of the tool's commands. The parser is large and header-only: only the files that handle the
/// command line as a whole include it, not every command.
namespace qv::tool {

/// A command failed: the text is printed, and the tool exits with 1.
struct CommandError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Returns the failure of an operation on a path, which is in the library's form.
CommandError FailedOn(const std::string& path, const std::string& what);

/// A command line that parses but is invalid: the text is printed, and the tool exits with 2.
struct WrongUsage : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Ends the tool without a message, with a command's own exit status.
struct CommandExit {
    int status;
};

/// A handle to an option or an operand of a command, valid as long as the command line.
class Option {
public:
    explicit Option(CLI::Option& option) : m_option(&option) {}

    Option& Require();
    /// Sets the value's name in the help.
    Option& CallValue(const char* name);
    /// Makes the help show the variable's current value.
    Option& ShowDefault();
    /// For an option with several values: each occurrence takes one.
    Option& TakeOneEach();
    /// Refuses numbers outside the range.
    Option& Between(int least, int most);
    /// Refuses all other words.
    Option& OneOf(const std::vector<std::string>& words);

    bool IsGiven() const;

private:
    CLI::Option* m_option;
};

/// A handle to a command or a family of commands. Variables must live until the command line has been read and the
/// actions have been called; what an action owns lives as long.
class Command {
public:
    explicit Command(CLI::App& app) : m_app(&app) {}

    Command Add(const char* name, const char* description);
    /// Adds a command that does nothing by itself: one of its subcommands must be given.
    Command AddFamily(const char* name, const char* description);

    /// Names with dashes are options ("-o,--output"), others are operands, identified by position.
    Option AddOption(const char* names, std::string& value, const char* description);
    Option AddOption(const char* names, std::vector<std::string>& values, const char* description);
    Option AddOption(const char* names, int& value, const char* description);
    Option AddOption(const char* names, unsigned& value, const char* description);
    /// Adds an option whose words are mapped to numbers.
    Option AddOption(const char* names, int& value, const std::map<std::string, int>& words, const char* description);
    /// Adds an option or operand that is a path: the variable gets it in the library's form.
    Option AddPath(const char* names, std::string& path, const char* description);
    Option AddPath(const char* names, std::vector<std::string>& paths, const char* description);
    void AddFlag(const char* names, bool& value, const char* description);

    /// Sets the notes below the list of options; to be called before AddExample.
    void SetNotes(const char* text);
    /// Adds a command line to the end of the help.
    void AddExample(const char* line);
    void SetAction(std::function<void()> action);

private:
    CLI::App* m_app;
};

}  // namespace qv::tool
