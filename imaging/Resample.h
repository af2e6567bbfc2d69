#pragma once

#include "imaging/Raster.h"
#include "qvcommon/ImageHelper.h"

namespace qv::imaging {

/// Time is linear in the pixels of source and result, times the lobes of the filter. Extra memory is that of some
/// rows of the result where it is smaller than the source, and at most four times the result's where it is larger.
Raster Scaled(const Raster& source, int width, int height, CImageHelper::Filter filter);

}  // namespace qv::imaging
