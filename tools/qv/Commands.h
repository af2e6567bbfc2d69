#pragma once

#include <CLI/CLI.hpp>

/// Each adds one command of the tool. A command that fails throws Failed; main prints its text and exits with 1. A command
/// with an exit status of its own throws CLI::RuntimeError.
namespace qv::tool {

struct Failed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

void AddArchiveCommands(CLI::App& app);
void AddBackup(CLI::App& app);
void AddBmp(CLI::App& app);
void AddCopy(CLI::App& app);
void AddCrc(CLI::App& app);
void AddDelete(CLI::App& app);
void AddEmf(CLI::App& app);
void AddFind(CLI::App& app);
void AddListen(CLI::App& app);
void AddLockCommand(CLI::App& app);
void AddLog(CLI::App& app);
void AddReport(CLI::App& app);
void AddSend(CLI::App& app);
void AddText(CLI::App& app);
void AddWatch(CLI::App& app);
void AddXml(CLI::App& app);

}  // namespace qv::tool
