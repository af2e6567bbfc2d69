#pragma once

#include <CLI/CLI.hpp>

/// Each adds one command of the tool. A command that fails throws Failed; main prints its text and exits with 1. A command
/// with an exit status of its own throws CLI::RuntimeError.
namespace qv::tool {

struct Failed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

void AddBmp(CLI::App& app);
void AddEmf(CLI::App& app);
void AddLockCommand(CLI::App& app);
void AddReport(CLI::App& app);
void AddText(CLI::App& app);

}  // namespace qv::tool
