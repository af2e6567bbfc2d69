#pragma once

#include "tools/qv/report/Figures.h"
#include "tools/qv/report/FileKinds.h"
#include "tools/qv/report/FolderTree.h"

namespace qv::tool {

/// Which files of a folder come first.
enum class FileOrder { Name, Size, Date };

/// A file as pages show it, made once for all of them.
struct FileRow {
    const FileEntry* file;
    const FileKind* kind;
    CString begin, end;  ///< of its row in the table; the kind comes between them
    CString thumbnail;   ///< a link around the picture; empty for files that are none
};

/// One folder's files.
struct FolderRows {
    const FolderEntry* folder;
    std::vector<FileRow> files;
};

/// @param linkPrefix  what comes before the file's path in an address, encoded.
std::vector<FolderRows> MakeRows(const std::vector<FolderEntry>& folders, const CString& linkPrefix);

/// The largest and the latest come first; those that are alike go by their names, in the order of the folder.
void Sort(FolderRows& rows, FileOrder order);

}  // namespace qv::tool
