#pragma once

#include "tools/qv/report/Figures.h"
#include "tools/qv/report/FileKinds.h"
#include "tools/qv/report/FolderTree.h"

namespace qv::tool {

/// Links have their own kinds, regardless of their names; others are judged by name.
const FileKind& KindOf(const FileEntry& file);

/// Returns the encoded address of a folder, to which file names are appended.
/// @param linkPrefix  the address of the outermost folder, with a final "/"
CString AddressOf(const FolderEntry& folder, const CString& linkPrefix);

/// Returns a link to the file that shows its name. @param folderAddress  from AddressOf.
CString LinkTo(const FileEntry& file, const CString& folderAddress);

/// Appends the file's table row: name, kind, size, change, checksum. End tags are omitted, as HTML allows. The exact
/// size and time are attributes, which the page's script uses to sort; pictures have a class.
void AppendRow(CString& html, const FileEntry& file, const CString& folderAddress);

}  // namespace qv::tool
