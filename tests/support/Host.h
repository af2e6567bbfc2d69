#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "platform/Path.h"
#include "platform/Process.h"

/// Wine starts programs of its host but does not report their end: a file shows it. The file is polled, since Wine sometimes
/// loses notifications of changes by its host. -1 when it takes more than a minute.
inline int RunOnWinesHost(const std::filesystem::path& folder, const std::string& line) {
    namespace fs = std::filesystem;
    constexpr const char* kShell = "Z:\\bin\\sh";
    constexpr int kMostLooks = 6000;
    constexpr std::chrono::milliseconds kBetween(10);
    const fs::path ended = folder / ".ended", before = fs::current_path();
    qv::platform::ChildProcess shell;
    if (!fs::exists(kShell)) return -1;
    fs::current_path(folder);
    const bool started = qv::platform::StartProcess(kShell, {"-c", "(" + line + "); echo $? > .end && mv .end .ended"},
                                                    false, false, shell)
                             .ok();
    fs::current_path(before);
    if (!started) return -1;
    for (int looks = 0; looks < kMostLooks && !fs::exists(ended); ++looks) std::this_thread::sleep_for(kBetween);
    int status = -1;
    std::ifstream(ended) >> status;
    fs::remove(ended);
    return status;
}

/// Runs a line of the shell in a folder, under Wine on its host. The status is -1 where there is no such shell. Wine
/// sometimes hangs when it starts a program of its host, so there only long runs have one.
inline int RunInShell(const std::filesystem::path& folder, const std::string& line) {
    if (qv::platform::HasDriveLetters()) return std::getenv("QV_TEST_LARGE") ? RunOnWinesHost(folder, line) : -1;
    return std::system(("cd '" + folder.string() + "' && " + line).c_str()) == 0 ? 0 : 1;
}
