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

/// What the tool's commands are made of. The parser behind it is headers only and large: it is compiled where the command
/// line as a whole is dealt with, not with every command.
namespace qv::tool {

/// A command that could not do its work: the text is printed, and the tool exits with 1.
struct Failed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The failure of work on a path, which comes in the library's form.
Failed FailedOn(const std::string& path, const std::string& what);

/// A command line that the parser has accepted and that makes no sense: the text is printed, and the tool exits with 2.
struct WrongUsage : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Ends the tool without a word, with an exit status that a command has of its own.
struct Ended {
    int status;
};

/// An option, or an operand, of a command. A copy stands for the same one, which lives as long as the command line.
class Option {
public:
    explicit Option(CLI::Option& option) : m_option(&option) {}

    Option& Require();
    /// What help calls the value.
    Option& CallValue(const char* name);
    /// Makes help show the value that the variable has now.
    Option& ShowDefault();
    /// Of several values, takes one each time that it is given.
    Option& TakeOneEach();
    /// Refuses numbers that lie outside.
    Option& Between(int least, int most);
    /// Refuses all other words.
    Option& OneOf(const std::vector<std::string>& words);

    bool IsGiven() const;

private:
    CLI::Option* m_option;
};

/// A command, or a family of commands. Variables have to live until the command line has been read, and actions are
/// called then: those that belong to an action go with it.
class Command {
public:
    explicit Command(CLI::App& app) : m_app(&app) {}

    Command Add(const char* name, const char* description);
    /// A command that does nothing by itself: one of those that are added to it has to be named.
    Command AddFamily(const char* name, const char* description);

    /// Names with dashes are options ("-o,--output"), others operands, which are told apart by their order.
    Option AddOption(const char* names, std::string& value, const char* description);
    Option AddOption(const char* names, std::vector<std::string>& values, const char* description);
    Option AddOption(const char* names, int& value, const char* description);
    Option AddOption(const char* names, unsigned& value, const char* description);
    /// An option whose words stand for numbers.
    Option AddOption(const char* names, int& value, const std::map<std::string, int>& words, const char* description);
    /// Options and operands that are paths: the variable gets them in the library's form.
    Option AddPath(const char* names, std::string& path, const char* description);
    Option AddPath(const char* names, std::vector<std::string>& paths, const char* description);
    void AddFlag(const char* names, bool& value, const char* description);

    /// The text below the help: what else is to be said, and an example.
    void SetFooter(const std::string& text);
    void SetAction(std::function<void()> action);

private:
    CLI::App* m_app;
};

}  // namespace qv::tool
