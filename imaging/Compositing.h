#pragma once

#include "imaging/Raster.h"

namespace qv::imaging {

/// Blends a pixel over another one, by its alpha times `opacity`, 0 to 255.
Pixel Over(Pixel upper, Pixel lower, int opacity = 255);
/// Blends all pixels over a background colour.
void FlattenPixels(Raster& pixels, DWORD colour);

}  // namespace qv::imaging
