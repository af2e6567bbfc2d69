#pragma once

#include "imaging/Raster.h"

namespace qv::imaging {

/// Lays a pixel on another one, by its alpha times `opacity`, 0 to 255.
Pixel Over(Pixel upper, Pixel lower, int opacity = 255);
/// Lays all pixels on a colour.
void LayOn(Raster& pixels, DWORD colour);

}  // namespace qv::imaging
