#pragma once

/// @file The one test whether a file or folder exists.

#include "qvcommon/framework/File.h"

namespace qv {

/// True when the system finds a file or folder of this name, in the library's form ("\" or the system's own separator).
/// What cannot be asked does not exist.
inline bool FileExists(const CString& path) {
    CFileStatus status;
    return !path.IsEmpty() && path.Find('\0') < 0 && CFile::GetStatus(path, status);
}

}  // namespace qv
