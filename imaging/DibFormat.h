#pragma once

#include "qvcommon/DIBitmap.h"

/// @file The BMP format, except for the information header.

namespace qv::imaging {

enum DibCompression : DWORD { kNoCompression = 0, kRunLength8 = 1, kRunLength4 = 2, kMasks = 3, kMasksWithAlpha = 6 };

inline constexpr std::uint16_t kBitmapType = 0x4D42;  // "BM"
inline constexpr std::size_t kFileHeaderSize = 14;

/// Red, green, blue and alpha of the pixels that this library writes.
inline constexpr DWORD kAlphaMasks[] = {0xFF0000, 0xFF00, 0xFF, 0xFF000000};

inline bool HasRunLengths(const DibHeader& header) {
    return header.compression == kRunLength8 || header.compression == kRunLength4;
}

/// Whether the format allows this depth with this compression.
inline bool IsFormat(const DibHeader& header) {
    const int bits = header.bitCount;
    switch (header.compression) {
        case kNoCompression: return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
        case kRunLength8: return bits == 8;
        case kRunLength4: return bits == 4;
        case kMasks:
        case kMasksWithAlpha: return bits == 16 || bits == 32;
        default: return false;
    }
}

}  // namespace qv::imaging
