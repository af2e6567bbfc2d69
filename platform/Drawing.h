#pragma once

/// @file Drawing of device-independent bitmaps. Only Windows has device contexts; a buffer of pixels can be drawn on
/// everywhere.

#include <cstdint>

namespace qv::platform {

/// Uncompressed padded rows. The information header and colours have the layout of the system's BITMAPINFO with 256
/// colours, its numbers are checked: a depth that the format has, masks for 16 and 32 bits only, as many rows as the header
/// says, and columns within its width.
struct DibRows {
    const void* info;
    const void* rows;
    int firstColumn;  ///< of the part that is drawn
    int columns;
};

struct DrawArea {
    int x, y, width, height;
};

/// 0x00RRGGBB each, the top row first; `pitch` pixels from one row to the next.
struct PixelBuffer {
    std::uint32_t* pixels;
    int width, height, pitch;
};

/// Stretches the part, all its rows, into the area, taking the nearest pixel; what lies outside the target is cut off.
/// @return false when the system cannot.
bool DrawOnContext(void* context, const DibRows& source, const DrawArea& area);
bool DrawOnPixels(const PixelBuffer& target, const DibRows& source, const DrawArea& area);

}  // namespace qv::platform
