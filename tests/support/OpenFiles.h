#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/Path.h"

/// Returns the paths of the files and folders that this process has open, sorted; empty on systems that do not list
/// them.
inline std::vector<std::string> OpenFiles() {
    std::vector<std::string> files;
    if (qv::platform::HasDriveLetters()) return files;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;  // the descriptor of the listing itself
        const std::string file = std::filesystem::read_symlink(entry, gone).string();
        if (file.starts_with('/')) files.push_back(file);
    }
    std::ranges::sort(files);
    return files;
}
