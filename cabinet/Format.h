#pragma once

/// @file The cabinet file format as defined by [MS-CAB]: sizes, flags, numbers. Everything is little-endian.

#include <cstddef>
#include <cstdint>

namespace qv::cabinet {

inline constexpr std::uint32_t kSignature = 0x4643534D;  // "MSCF"
inline constexpr unsigned char kMajorVersion = 1, kMinorVersion = 3;

inline constexpr std::size_t kHeaderSize = 36, kReserveSizesSize = 4, kFolderSize = 8, kFileSize = 16, kDataSize = 8;
/// Includes the terminating zero byte.
inline constexpr std::size_t kLongestName = 256;

enum HeaderFlag : unsigned { kHasPrevious = 1, kHasNext = 2, kHasReserve = 4 };

inline constexpr unsigned kCompressionMask = 0x000F;
enum Compression : std::uint16_t { kStored = 0, kMszip = 1, kQuantum = 2, kLzx = 3 };
inline constexpr unsigned kSmallestLzxWindow = 15, kLargestLzxWindow = 21;

/// Returns the exponent of an LZX folder's window, from the bits above the method.
constexpr unsigned LzxWindowOf(unsigned compression) {
    return compression >> 8 & 0x1F;
}

/// Folder numbers of members that span several cabinets.
enum ContinuedFolder : std::uint16_t { kFromPrevious = 0xFFFD, kToNext = 0xFFFE, kPreviousAndNext = 0xFFFF };

enum Attribute : std::uint16_t { kNameIsUtf8 = 0x80, kExecutable = 0x40, kFileAttributes = 0x27 };

/// The size of a data block; only a folder's last one is shorter.
inline constexpr std::size_t kBlockSize = 32768;
/// The maximum size of an MSZIP-compressed block ([MS-MCI]).
inline constexpr std::size_t kLargestCompressed = kBlockSize + 12;
/// The maximum compressed size of a block with other compressions.
inline constexpr std::size_t kLargestData = kBlockSize + 6144;
inline constexpr std::uint32_t kMostBlocks = 0xFFFF;
inline constexpr std::uint32_t kLargestFolder = kMostBlocks * kBlockSize;
inline constexpr std::uint32_t kMostFiles = 0xFFFF;

inline std::uint16_t Get16(const unsigned char* at) {
    return static_cast<std::uint16_t>(at[0] | at[1] << 8);
}

inline std::uint32_t Get32(const unsigned char* at) {
    return Get16(at) | std::uint32_t{Get16(at + 2)} << 16;
}

inline unsigned char* Put16(unsigned char* at, unsigned value) {
    at[0] = static_cast<unsigned char>(value);
    at[1] = static_cast<unsigned char>(value >> 8);
    return at + 2;
}

inline unsigned char* Put32(unsigned char* at, std::uint32_t value) {
    return Put16(Put16(at, value & 0xFFFF), value >> 16);
}

/// Returns the checksum of `size` bytes of a data block, continuing from `seed`.
std::uint32_t Checksum(const unsigned char* data, std::size_t size, std::uint32_t seed = 0);

/// Fills in a block's header (checksum, sizes) for data stored elsewhere.
void PutDataHeader(unsigned char* header, const unsigned char* data, std::size_t size, std::size_t uncompressed);

}  // namespace qv::cabinet
