#include "tools/qv/Command.h"

#include <CLI/CLI.hpp>

#include <utility>

#include "qvcommon/FileUtils.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

std::string ToLibraryForm(const std::string& path) {
    return CFileUtils::GetLibraryPath(path.c_str()).AsStd();
}

}  // namespace

Failed FailedOn(const std::string& path, const std::string& what) {
    return Failed(Native(path) + ": " + what);
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

Option& Option::Between(int least, int most) {
    m_option->check(CLI::Range(least, most));
    return *this;
}

Option& Option::OneOf(const std::vector<std::string>& words) {
    m_option->check(CLI::IsMember(words));
    return *this;
}

bool Option::IsGiven() const {
    return m_option->count() > 0;
}

Command Command::Add(const char* name, const char* description) {
    return Command(*m_app->add_subcommand(name, description));
}

Command Command::AddFamily(const char* name, const char* description) {
    CLI::App& family = *m_app->add_subcommand(name, description);
    family.require_subcommand(1);
    return Command(family);
}

Option Command::AddOption(const char* names, std::string& value, const char* description) {
    return Option(*m_app->add_option(names, value, description));
}

Option Command::AddOption(const char* names, std::vector<std::string>& values, const char* description) {
    return Option(*m_app->add_option(names, values, description));
}

Option Command::AddOption(const char* names, int& value, const char* description) {
    return Option(*m_app->add_option(names, value, description));
}

Option Command::AddOption(const char* names, unsigned& value, const char* description) {
    return Option(*m_app->add_option(names, value, description));
}

Option Command::AddOption(const char* names, int& value, const std::map<std::string, int>& words,
                          const char* description) {
    return Option(*m_app->add_option(names, value, description)->transform(CLI::CheckedTransformer(words)));
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

void Command::SetFooter(const std::string& text) {
    m_app->footer(text);
}

void Command::SetAction(std::function<void()> action) {
    m_app->callback(std::move(action));
}

}  // namespace qv::tool
