#pragma once

/// @file The test for the existence of a file or folder.

#include "qvcommon/framework/File.h"

namespace qv {

/// Returns true if a file or folder of this name, in the library's form ("\" or the system's own separator), exists.
/// False if it cannot be queried.
inline bool FileExists(const CString& path) {
    CFileStatus status;
    return !path.IsEmpty() && path.Find('\0') < 0 && CFile::GetStatus(path, status);
}

}  // namespace qv
