#pragma once

/// @file Drawing of device-independent bitmaps. Only Windows has device contexts; every system can draw on a buffer of
/// pixels.

#include <cstdint>

namespace qv::platform {

/// Uncompressed padded rows. The information header and colours have the layout of the system's BITMAPINFO with 256
/// colours and must be valid: a depth that the format has, masks for 16 and 32 bits only, the number of rows in the
/// header, and columns within its width.
struct DibRows {
    const void* info;
    const void* rows;
    int firstColumn;  ///< of the part to be drawn
    int columns;
};

struct DrawArea {
    int x, y, width, height;
};

/// 0x00RRGGBB each, top-down; `pitch` pixels from one row to the next.
struct PixelBuffer {
    std::uint32_t* pixels;
    int width, height, pitch;
};

/// Scales the part, with all its rows, to the area, using the nearest pixel, clipped to the target.
/// @return false if the system cannot draw.
bool DrawOnContext(void* context, const DibRows& source, const DrawArea& area);
bool DrawOnPixels(const PixelBuffer& target, const DibRows& source, const DrawArea& area);

}  // namespace qv::platform
