#pragma once

#include <string_view>

#include "imaging/Bytes.h"

/// @file PNG as defined by ISO/IEC 15948.

namespace qv::imaging {

enum PngColour { kPngGrey = 0, kPngRgb = 2, kPngPalette = 3, kPngGreyAlpha = 4, kPngRgbAlpha = 6 };
enum PngFilter : BYTE { kNoFilter, kSub, kUp, kAverage, kPaeth };

inline constexpr std::string_view kPngSignature = "\x89PNG\r\n\x1A\n";
/// Length and name before the content of a chunk, and its checksum after it.
inline constexpr std::size_t kChunkHead = 8, kChunkTail = 4;

struct PngHeader {
    int width = 0, height = 0, depth = 0, colour = 0;  ///< the depth is that of a sample
    bool interlaced = false;

    bool HasColours() const { return (colour & kPngRgb) != 0; }
    int Channels() const {
        return colour == kPngRgb ? 3 : colour == kPngRgbAlpha ? 4 : colour == kPngGreyAlpha ? 2 : 1;
    }
    int PixelBits() const { return depth * Channels(); }
    /// The size of a row of `pixels` pixels, without the filter byte.
    std::size_t RowBytes(int pixels) const { return (static_cast<std::size_t>(pixels) * PixelBits() + 7) / 8; }
    /// The distance in bytes to the same byte of the left neighbour.
    int FilterStep() const { return PixelBits() < 8 ? 1 : PixelBits() / 8; }
};

/// The pixels of one pass: all, or a lattice.
struct PngPass {
    int x, y, stepX, stepY;

    int Columns(int width) const { return (width - x + stepX - 1) / stepX; }
    int Rows(int height) const { return (height - y + stepY - 1) / stepY; }
};

/// The passes of interlaced pictures.
inline constexpr PngPass kInterlaced[] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                                          {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};
inline constexpr PngPass kWhole[] = {{0, 0, 1, 1}};

inline std::span<const PngPass> PassesOf(const PngHeader& header) {
    if (header.interlaced) return kInterlaced;
    return kWhole;
}

}  // namespace qv::imaging
