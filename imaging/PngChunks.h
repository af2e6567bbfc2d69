#pragma once

#include <vector>

#include "imaging/PngFormat.h"
#include "qvcommon/DIBitmap.h"

namespace qv::imaging {

/// The chunks of a PNG file, as views into its bytes.
struct PngFile {
    PngHeader header;
    Bytes palette;  ///< three bytes a colour; empty where the colour type has none
    Bytes
        transparency;  ///< alpha of the first colours, or one colour of 16 bits a sample; empty when the file has no such chunk
    LONG horizontalPerMetre = 0, verticalPerMetre = 0;
    std::vector<Bytes> data;

    bool HasAlpha() const { return header.colour >= kPngGreyAlpha || !transparency.empty(); }
};

/// Whether the bytes begin as those of a PNG file do.
bool IsPng(Bytes file);

/// Checks order, sizes and checksums of all chunks up to the last, and that the data may hold as many pixels as the header
/// says. @throws PictureError
PngFile ParsePng(Bytes file);

}  // namespace qv::imaging
