#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "qvcommon/framework/Types.h"

namespace qv::imaging {

/// Decodes run-length encoded bitmap rows (compressions 1 and 2 of the BMP format) to one byte per pixel.
///
/// `out` holds `rows` rows of `pitch` bytes, bottom row first, and must be zeroed: pixels that the data skips or does
/// not reach stay zero. Data for pixels outside the picture is dropped.
/// @param nibbles  true for 4-bit pixels, false for 8-bit ones.
void DecodeRunLengths(std::span<const BYTE> data, bool nibbles, std::int64_t width, std::int64_t rows,
                      std::int64_t pitch, BYTE* out);

}  // namespace qv::imaging
