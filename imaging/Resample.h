#pragma once

#include "imaging/Raster.h"
#include "qvcommon/ImageHelper.h"

namespace qv::imaging {

/// Time is O(pixels of source and result), times the lobes of the filter. Extra memory is a few result rows when
/// scaling down, at most four times the result when scaling up.
Raster Scaled(const Raster& source, int width, int height, CImageHelper::Filter filter);

}  // namespace qv::imaging
