#pragma once

#include <array>

#include "tools/qv/report/FileKinds.h"
#include "tools/qv/report/FolderTree.h"

namespace qv::tool {

/// The files of one kind, which may have several extensions.
struct KindTotals {
    const FileKind* kind;
    FolderTotals totals;
};

struct FileOfFolder {
    std::size_t folder;  ///< its index in FolderTree::folders
    const FileEntry* file;
};

/// The number of files last changed in a day, a month or a year, in local time.
struct PeriodCount {
    int year, month, day;  ///< the first day
    std::size_t files;
};

struct Overview {
    static constexpr std::size_t kMostFiles = 10;  ///< and folders

    std::vector<KindTotals> kinds;  ///< by name
    std::vector<std::size_t>
        folders;  ///< at most kMostFiles indexes in FolderTree::folders, by the size of their own files
    std::vector<FileOfFolder> largest;  ///< at most kMostFiles, the largest first; without links
    std::vector<FileOfFolder> latest;   ///< at most kMostFiles, the latest first
    /// Without gaps, the earliest first, all of the same unit.
    std::vector<PeriodCount> changes;
    const char* period = "";  ///< "day", "month", "year"
};

/// O(n log n) for n files. Keeps pointers into the folders.
/// @param now  later changes, which wrong clocks cause, are ignored.
Overview MakeOverview(const std::vector<FolderEntry>& folders, std::int64_t now);

}  // namespace qv::tool
