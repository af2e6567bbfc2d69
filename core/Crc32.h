#pragma once

#include <cstddef>
#include <cstdint>

namespace qv {

/// Extends a CRC-32. It starts with 0 and needs no finalization: Crc32(Crc32(0, a), b) is that of both.
std::uint32_t Crc32(std::uint32_t crc, const char* data, std::size_t size);

/// Returns the checksum of the concatenation of two texts, from their checksums and the length of the second. O(log n).
std::uint32_t JoinedCrc32(std::uint32_t first, std::uint32_t second, std::uint64_t secondLength);

/// Crc32 by tables, on any processor.
std::uint32_t Crc32ByTables(std::uint32_t crc, const char* data, std::size_t size);

}  // namespace qv
