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
    ToFile,  ///< the other fields describe the target
    ToFolder,
    Broken
};

struct FileEntry {
    std::string name;  ///< UTF-8
    std::uintmax_t size = 0;
    std::int64_t modified = 0;
    LinkKind link = LinkKind::None;
    unsigned long checksum = 0;   ///< CRC-32
    std::string noChecksum = {};  ///< why it is missing, in the process's code page; empty if there is one
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
    std::string path;  ///< UTF-8, relative to the first folder, with "/"; empty for that folder itself
    int depth = 0;
    bool isReadable = true;
    std::vector<FileEntry> files = {};
    FolderTotals own = {};      ///< of `files`
    FolderTotals overall = {};  ///< including all subfolders
};

/// An entry that the pages omit, at least in part.
struct LeftOutEntry {
    std::string path;    ///< UTF-8, relative to the first folder, with "/"
    std::string reason;  ///< in the process's code page
};

struct FolderTree {
    /// The folder and all its descendants in pre-order, sorted by name, case-insensitively.
    std::vector<FolderEntry> folders;
    std::vector<LeftOutEntry> leftOut;  ///< in the order of the walk
};

/// Links are listed and never entered. Devices, ".git" and unreadable entries are in `leftOut`; all except ".git" are
/// also reported to the observer. The paths in `skipped` are ignored.
FolderTree ReadFolderTree(const std::filesystem::path& folder, const std::vector<std::filesystem::path>& skipped,
                          Progress& progress, ILeftOut& observer);

}  // namespace qv::tool
