#pragma once

#include "imaging/Raster.h"

namespace qv::imaging {

/// Clockwise, by 0 to 3 quarters.
Raster Turned(Raster source, int quarters);
Raster MirroredLeftRight(Raster source);
Raster MirroredUpDown(Raster source);
Raster Cropped(const Raster& source, int x, int y, int width, int height);

/// By an angle of 0 to 360 degrees, clockwise. Background as for CImageHelper::Rotate. Nullopt when it gets too large.
std::optional<Raster> Rotated(const Raster& source, double degrees, DWORD background);

/// The sine of `x` times pi: the same bits on every system, which the C run times do not promise.
double SinPi(double x);

}  // namespace qv::imaging
