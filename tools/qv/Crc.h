#pragma once

#include <string>

namespace qv::tool {

/// The CRC-32 of a file, whose path is in the library's form. @throws CFileException* when it cannot be read to its end.
unsigned long CrcOf(const std::string& path);

}  // namespace qv::tool
