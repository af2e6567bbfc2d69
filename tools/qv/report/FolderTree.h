#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "tools/qv/Progress.h"

namespace qv::tool {

struct FileEntry {
    std::string name;  ///< UTF-8
    std::uintmax_t size = 0;
    std::time_t modified = 0;
    unsigned long checksum = 0;  ///< CRC-32; 0 for a file that cannot be read, too
};

struct FolderTotals {
    std::uintmax_t files = 0;
    std::uintmax_t bytes = 0;

    void Add(const FolderTotals& other) {
        files += other.files;
        bytes += other.bytes;
    }
};

struct FolderEntry {
    std::string path;  ///< UTF-8, from the first folder, with "/"; empty for that folder itself
    int depth = 0;
    bool isReadable = true;
    std::vector<FileEntry> files = {};
    FolderTotals own = {};      ///< of `files`
    FolderTotals overall = {};  ///< with all folders below
};

/// The folder and all folders below, each before its own, sorted by name without regard to case. Links to folders are not
/// entered, ".git" is left out, and so are the paths in `skipped` and names that the library cannot reach (with "\" on
/// Linux).
std::vector<FolderEntry> ReadFolderTree(const std::filesystem::path& folder,
                                        const std::vector<std::filesystem::path>& skipped, Progress& progress);

}  // namespace qv::tool
