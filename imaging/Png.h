#pragma once

#include <functional>

#include "imaging/Bytes.h"
#include "imaging/PlainRows.h"
#include "imaging/PngChunks.h"

/// @file PNG files in memory. Our own code over zlib, so that both systems read and write alike.

namespace qv::imaging {

/// As CImageHelper::ReadPng says. @throws PictureError
NewDib DecodePng(const PngFile& file);

/// As CImageHelper::WritePng says, in pieces of some ten kilobytes. Density in pixels per metre, 0 when not known.
/// @throws what `write` throws
void EncodePng(const PlainRows& rows, const std::function<void(Bytes)>& write);

}  // namespace qv::imaging
