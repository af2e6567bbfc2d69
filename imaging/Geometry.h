#pragma once

#include "imaging/Raster.h"

namespace qv::imaging {

/// Returns the picture rotated clockwise by 0 to 3 quarter turns.
Raster Turned(Raster source, int quarters);
Raster MirroredLeftRight(Raster source);
Raster MirroredUpDown(Raster source);
Raster Cropped(const Raster& source, int x, int y, int width, int height);

/// Returns the picture rotated clockwise by 0 to 360 degrees. Background as for CImageHelper::Rotate. Nullopt if the
/// result is too large.
std::optional<Raster> Rotated(const Raster& source, double degrees, DWORD background);

/// Returns the sine of `x` times pi: bit-identical on every system, which C run times do not promise.
double SinPi(double x);

}  // namespace qv::imaging
