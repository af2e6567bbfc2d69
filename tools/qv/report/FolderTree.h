#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "qvcommon/framework/LeftOut.h"
#include "tools/qv/Progress.h"

namespace qv::tool {

enum class LinkKind {
    None,
    ToFile,  ///< all else is told of the file that it leads to
    ToFolder,
    Broken
};

struct FileEntry {
    std::string name;  ///< UTF-8
    std::uintmax_t size = 0;
    std::int64_t modified = 0;
    LinkKind link = LinkKind::None;
    unsigned long checksum = 0;   ///< CRC-32
    std::string noChecksum = {};  ///< why there is none, in the process's code page; empty when there is one
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

/// What is not on the pages, or not all of it.
struct LeftOutEntry {
    std::string path;    ///< UTF-8, from the first folder, with "/"
    std::string reason;  ///< in the process's code page
};

struct FolderTree {
    /// The folder and all folders below, each before its own, sorted by name without regard to case.
    std::vector<FolderEntry> folders;
    std::vector<LeftOutEntry> leftOut;  ///< in the order of the walk
};

/// Links are listed and never entered. Devices, ".git" and what cannot be read are in `leftOut`; all but ".git" is told to
/// the observer as well. The paths in `skipped` are passed over.
FolderTree ReadFolderTree(const std::filesystem::path& folder, const std::vector<std::filesystem::path>& skipped,
                          Progress& progress, ILeftOut& observer);

}  // namespace qv::tool
