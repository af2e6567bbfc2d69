#include "tools/qv/Usage.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <numeric>
#include <optional>

#include "tools/qv/Operands.h"

namespace qv::tool {
namespace {

// Returns the Levenshtein distance of the words.
std::size_t DistanceBetween(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j)
            diagonal = std::exchange(row[j + 1], std::min({row[j + 1] + 1, row[j] + 1, diagonal + (a[i] != b[j])}));
    }
    return row.back();
}

// Returns the nearest word, unless more than a third of it must change.
std::optional<std::string> NearestTo(std::string_view word, const std::vector<std::string>& words) {
    constexpr std::size_t kLongest = 64;
    std::optional<std::string> nearest;
    std::size_t best = kLongest;
    for (const std::string& candidate : words) {
        const std::size_t distance = word.size() > kLongest ? kLongest : DistanceBetween(word, candidate);
        if (distance >= best || distance * 3 > std::max(word.size(), candidate.size())) continue;
        best = distance;
        nearest = candidate;
    }
    return nearest;
}

std::string Suggest(std::string_view word, const std::vector<std::string>& words, const std::string& otherwise) {
    const auto nearest = NearestTo(word, words);
    return nearest ? "; did you mean '" + *nearest + "'?" : otherwise;
}

// The command named by the words before the mistake, and its path.
struct Place {
    const CLI::App* command;
    std::string path;
};

Place InnermostCommand(const CLI::App& app) {
    Place place{&app, app.get_name()};
    for (auto below = app.get_subcommands(); !below.empty(); below = place.command->get_subcommands()) {
        place.command = below.back();
        place.path += ' ' + place.command->get_name();
    }
    return place;
}

std::vector<std::string> CommandNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::App* const below : command.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(below->get_name());
    return names;
}

std::vector<std::string> OptionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* const option : command.get_options())
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    return names;
}

bool TakesOperands(const CLI::App& command) {
    return std::ranges::any_of(command.get_options(),
                               [](const CLI::Option* option) { return option->get_positional(); });
}

}  // namespace

std::string ProblemWith(const std::string& word, const CLI::App& command) {
    if (word.starts_with('-')) {
        const char* const otherwise = TakesOperands(command) ? "; put -- before a name that begins with a dash" : "";
        return "unknown option '" + word + "'" + Suggest(word, OptionNames(command), otherwise);
    }
    const std::vector<std::string> commands = CommandNames(command);
    if (commands.empty()) return "unexpected argument '" + Unmarked(word) + "'";
    return "unknown command '" + Unmarked(word) + "'" + Suggest(word, commands, "");
}

std::string ExplainUsage(const CLI::App& app, const std::string& problem) {
    return "qv: " + problem + "\nSee '" + InnermostCommand(app).path + " --help'.\n";
}

std::string ExplainUsage(const CLI::App& app, const CLI::ParseError& error) {
    const bool isAboutValue = error.get_name() == "ValidationError";
    const std::vector<std::string> unknown = isAboutValue ? std::vector<std::string>() : app.remaining(true);
    const CLI::App& command = *InnermostCommand(app).command;
    if (!unknown.empty()) return ExplainUsage(app, ProblemWith(unknown.front(), command));
    const bool lacksCommand = !CommandNames(command).empty() && error.get_name() == "RequiredError";
    const std::string text = error.what();
    if (error.get_name() == "ArgumentMismatch")
        return ExplainUsage(app, text.substr(0, text.find(':')) + " needs a value");
    return ExplainUsage(app, lacksCommand ? "a command is required" : text);
}

}  // namespace qv::tool
