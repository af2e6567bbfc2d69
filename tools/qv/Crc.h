#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/qv/Progress.h"

namespace qv::tool {

/// Returns the CRC-32 of a file, whose path is in the library's form; its bytes count as progress.
/// @throws CFileException* if it cannot be read to its end.
unsigned long CrcOf(const std::string& path, Progress& progress);

/// Calls `next` with each checksum in the order of the paths; with nullopt, after printing an error, if a file cannot
/// be read. "-" is standard input. Files and their bytes count as progress.
void SumEach(const std::vector<std::string>& paths, Progress& progress,
             const std::function<void(std::size_t index, std::optional<unsigned long> crc)>& next);

}  // namespace qv::tool
