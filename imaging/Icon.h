#pragma once

#include <functional>
#include <vector>

#include "imaging/Bytes.h"
#include "imaging/PlainRows.h"

/// @file Icon files (ICO) in memory: a directory, and pictures as PNG or as bitmaps without a file header, whose rows
/// of pixels are followed by the rows of a 1-bit mask.

namespace qv::imaging {

/// The file header, as stored.
struct IconHead {
    std::uint16_t reserved, type, count;
};
constexpr std::uint16_t kIconType = 1;

/// A directory entry, as stored.
struct IconEntry {
    BYTE width, height;  ///< 0 means 256
    BYTE colours, reserved;
    std::uint16_t planes, bitCount;
    std::uint32_t size, offset;
};
static_assert(sizeof(IconHead) == 6 && sizeof(IconEntry) == 16);

/// See CImageHelper::ReadIcon. @throws PictureError
std::vector<NewDib> DecodeIcon(Bytes file);

/// See CImageHelper::WriteIcon; writes piece by piece. Returns false and writes nothing if there are no pictures or
/// one is not suitable for an icon. @throws what `write` throws
bool EncodeIcon(std::span<const CDIBitmap* const> pictures, const std::function<void(Bytes)>& write);

}  // namespace qv::imaging
