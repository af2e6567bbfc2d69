#pragma once

#include "qvcommon/framework/String.h"

namespace qv {

/// The parts of a path as CFilePath splits it, but of any length: what acts on files must never act on a path that was cut.

/// The path with its extension replaced, or with one added to a name that has none. `extension` has no point.
CString WithExtension(const CString& path, const char* extension);

/// The folder of the path's last name, without a final separator unless it is the root; empty for a name alone.
CString FolderOf(const CString& path);

/// The path's last name without its extension.
CString TitleOf(const CString& path);

}  // namespace qv
