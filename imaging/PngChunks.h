#pragma once

#include <vector>

#include "imaging/PngFormat.h"
#include "qvcommon/DIBitmap.h"

namespace qv::imaging {

/// The chunks of a PNG file, as views into its bytes.
struct PngFile {
    PngHeader header;
    Bytes palette;       ///< three bytes per colour; empty if the colour type has none
    Bytes transparency;  ///< alpha of the first colours, or one colour of 16-bit samples; may be empty
    LONG horizontalPerMetre = 0, verticalPerMetre = 0;
    std::vector<Bytes> data;

    bool HasAlpha() const { return header.colour >= kPngGreyAlpha || !transparency.empty(); }
};

/// Whether the bytes begin with the PNG signature.
bool IsPng(Bytes file);

/// Checks order, sizes and checksums of all chunks up to the last, and that the data is long enough for the number of
/// pixels in the header. @throws PictureError
PngFile ParsePng(Bytes file);

}  // namespace qv::imaging
