#pragma once

#include <string>

#include "tools/qv/Progress.h"

namespace qv::tool {

/// The CRC-32 of a file, whose path is in the library's form; its bytes count as progress.
/// @throws CFileException* when it cannot be read to its end.
unsigned long CrcOf(const std::string& path, Progress& progress);

}  // namespace qv::tool
