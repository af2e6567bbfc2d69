#pragma once

#include <functional>

#include "imaging/Bytes.h"
#include "imaging/PlainRows.h"
#include "imaging/PngChunks.h"

/// @file PNG files in memory. Implemented on zlib only, so that all systems read and write identically.

namespace qv::imaging {

/// See CImageHelper::ReadPng. @throws PictureError
NewDib DecodePng(const PngFile& file);

/// See CImageHelper::WritePng; writes pieces of about 64 KB. The header's density is in pixels per metre, 0 if unknown.
/// @throws what `write` throws
void EncodePng(const PlainRows& rows, const std::function<void(Bytes)>& write);

}  // namespace qv::imaging
