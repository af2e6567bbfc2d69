#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "platform/FolderWatch.h"
#include "platform/Path.h"
#include "platform/Process.h"

/// Wine starts programs of its host, and says nothing more of them: a file tells their end.
inline int RunOnWinesHost(const std::filesystem::path& folder, const std::string& line) {
    namespace fs = std::filesystem;
    constexpr const char* kShell = "Z:\\bin\\sh";
    constexpr unsigned kFileNames = 1;
    const fs::path ended = folder / ".ended", before = fs::current_path();
    const auto watch = qv::platform::FolderWatch::Open(folder.string().c_str(), false, kFileNames);
    qv::platform::ChildProcess shell;
    if (!watch || !fs::exists(kShell)) return -1;
    fs::current_path(folder);
    const bool started = qv::platform::StartProcess(kShell, {"-c", "(" + line + "); echo $? > .end && mv .end .ended"},
                                                    false, false, shell)
                             .ok();
    fs::current_path(before);
    if (!started) return -1;
    while (!fs::exists(ended) && watch->Wait() == qv::platform::FolderWatch::Event::Change && watch->Rearm()) {
    }
    int status = -1;
    std::ifstream(ended) >> status;
    watch->Close();
    fs::remove(ended);
    return status;
}

/// Runs a line of the shell in a folder, on the system that the tests really run on: under Wine on its host. The status is
/// -1 where there is no such shell.
inline int RunInShell(const std::filesystem::path& folder, const std::string& line) {
    if (qv::platform::HasDriveLetters()) return RunOnWinesHost(folder, line);
    return std::system(("cd '" + folder.string() + "' && " + line).c_str()) == 0 ? 0 : 1;
}
