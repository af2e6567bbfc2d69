#pragma once

#include "imaging/Raster.h"

namespace qv::imaging {

/// Writes pixels into a bitmap's row of 1, 4, 8, 24 or 32 bits per pixel: their lowest bits, indices at depths up to 8.
void PutPixels(const Pixel* pixels, int count, int bits, BYTE* row);
/// The same for every `step`-th pixel of the row from `first` on; the others are unchanged.
void PutEachPixel(const Pixel* pixels, int count, int bits, BYTE* row, int first, int step);

}  // namespace qv::imaging
