#pragma once

#include "tools/qv/report/Figures.h"
#include "tools/qv/report/FileKinds.h"
#include "tools/qv/report/FolderTree.h"

namespace qv::tool {

/// Of links their own, whatever they are called; of all others by the name.
const FileKind& KindOf(const FileEntry& file);

/// The address of a folder's files without their names, encoded.
/// @param linkPrefix  the address of the outermost folder, with "/" at its end
CString AddressOf(const FolderEntry& folder, const CString& linkPrefix);

/// A link to the file, which shows its name. @param folderAddress  as AddressOf returns it.
CString LinkTo(const FileEntry& file, const CString& folderAddress);

/// Appends the file's row of a table: name, kind, size, change, checksum. HTML lets the end tags out. The exact size and time
/// are attributes, by which the page's script sorts; pictures have a class.
void AppendRow(CString& html, const FileEntry& file, const CString& folderAddress);

}  // namespace qv::tool
