#include "tools/qv/Command.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

#include "qvcommon/FileUtils.h"
#include "tools/qv/Operands.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

std::string ToLibraryForm(const std::string& path) {
    return CFileUtils::GetLibraryPath(Unmarked(path).c_str()).AsStd();
}

// The parser's own messages name its types.
template <class Number>
CLI::Validator WholeNumber(const Number&) {
    return CLI::Validator(
        [](std::string& text) {
            Number number;
            return CLI::detail::lexical_cast(text, number) ? "" : "'" + text + "' is not a valid number";
        },
        "");
}

std::vector<std::string> KeysOf(const std::map<std::string, int>& words) {
    std::vector<std::string> keys;
    keys.reserve(words.size());
    for (const auto& [word, number] : words) keys.push_back(word);
    return keys;
}

// Lists the words in the help and in error messages; `ToValue` converts a word to the variable's type.
template <class ToValue>
CLI::Validator WordOf(const std::vector<std::string>& words, ToValue toValue) {
    const std::string list = CLI::detail::join(words, ",");
    return CLI::Validator(
        [=](std::string& text) {
            text = Unmarked(text);
            if (std::ranges::find(words, text) == words.end())
                return "'" + text + "' is not one of " + CLI::detail::join(words, ", ");
            text = toValue(text);
            return std::string();
        },
        "{" + list + "}");
}

}  // namespace

CommandError FailedOn(const std::string& path, const std::string& what) {
    return CommandError(Native(path) + ": " + what);
}

Option& Option::Require() {
    m_option->required();
    return *this;
}

Option& Option::CallValue(const char* name) {
    m_option->option_text(name);
    return *this;
}

Option& Option::ShowDefault() {
    m_option->capture_default_str();
    return *this;
}

Option& Option::TakeOneEach() {
    m_option->expected(1)->allow_extra_args(false)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    return *this;
}

Option& Option::Between(int least, int most) {
    m_option->check([=](const std::string& text) {
        long long number = 0;
        const bool holds = CLI::detail::lexical_cast(text, number) && number >= least && number <= most;
        return holds ? "" : "'" + text + "' is not between " + std::to_string(least) + " and " + std::to_string(most);
    });
    return *this;
}

Option& Option::OneOf(const std::vector<std::string>& words) {
    m_option->transform(WordOf(words, [](const std::string& word) { return word; }));
    return *this;
}

bool Option::IsGiven() const {
    return m_option->count() > 0;
}

Command Command::Add(const char* name, const char* description) {
    CLI::App& command = *m_app->add_subcommand(name, description);
    command.footer("");  // otherwise that of the family
    return Command(command);
}

Command Command::AddFamily(const char* name, const char* description) {
    const Command family = Add(name, description);
    family.m_app->require_subcommand(1);
    return family;
}

Option Command::AddOption(const char* names, std::string& value, const char* description) {
    return Option(*m_app->add_option(names, value, description)->transform(Unmarked));
}

Option Command::AddOption(const char* names, std::vector<std::string>& values, const char* description) {
    return Option(*m_app->add_option(names, values, description)->transform(Unmarked));
}

Option Command::AddOption(const char* names, int& value, const char* description) {
    return Option(*m_app->add_option(names, value, description)->transform(Unmarked)->check(WholeNumber(value)));
}

Option Command::AddOption(const char* names, unsigned& value, const char* description) {
    return Option(*m_app->add_option(names, value, description)->transform(Unmarked)->check(WholeNumber(value)));
}

Option Command::AddOption(const char* names, int& value, const std::map<std::string, int>& words,
                          const char* description) {
    const std::vector<std::string> texts = KeysOf(words);
    const auto toNumber = [words](const std::string& word) { return std::to_string(words.at(word)); };
    return Option(*m_app->add_option(names, value, description)->transform(WordOf(texts, toNumber)));
}

Option Command::AddPath(const char* names, std::string& path, const char* description) {
    return Option(*m_app->add_option(names, path, description)->transform(ToLibraryForm));
}

Option Command::AddPath(const char* names, std::vector<std::string>& paths, const char* description) {
    return Option(*m_app->add_option(names, paths, description)->transform(ToLibraryForm));
}

void Command::AddFlag(const char* names, bool& value, const char* description) {
    m_app->add_flag(names, value, description);
}

void Command::SetNotes(const char* text) {
    m_app->footer(text);
}

void Command::AddExample(const char* line) {
    std::string footer = m_app->get_footer();
    if (footer.find("Examples:\n") == footer.npos) footer += footer.empty() ? "Examples:" : "\n\nExamples:";
    m_app->footer(footer + "\n  " + line);
}

void Command::SetAction(std::function<void()> action) {
    m_app->callback(std::move(action));
}

}  // namespace qv::tool
