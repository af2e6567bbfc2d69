#pragma once

#include "qvcommon/framework/String.h"

namespace qv {

/// The parts of a path as CFilePath splits it, but of any length: code that acts on files must not use a truncated
/// path.

/// Returns the path with its extension replaced, or added to a name without one. `extension` has no leading dot.
CString WithExtension(const CString& path, const char* extension);

/// Returns the folder of the path's last name, without a final separator unless it is the root; empty for a bare name.
CString FolderOf(const CString& path);

/// Returns the path's last name without its extension.
CString TitleOf(const CString& path);

}  // namespace qv
