#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "qvcommon/framework/Types.h"

namespace qv::imaging {

/// Bitmap rows of run lengths (compressions 1 and 2 of the BMP format), decoded to one byte a pixel.
///
/// `out` holds `rows` rows of `pitch` bytes, the bottom one first, and is zero at first: pixels that the data skips or does
/// not reach stay zero. Data for pixels outside the picture is dropped.
/// @param nibbles  true for pixels of 4 bits, false for those of 8.
void DecodeRunLengths(std::span<const BYTE> data, bool nibbles, std::int64_t width, std::int64_t rows,
                      std::int64_t pitch, BYTE* out);

}  // namespace qv::imaging
