#pragma once

#include <functional>
#include <vector>

#include "imaging/Bytes.h"
#include "imaging/PlainRows.h"

/// @file Icon files (ICO) in memory: a directory, and pictures as PNG or as bitmaps without their file header, whose rows
/// of pixels are followed by rows of a mask of 1 bit.

namespace qv::imaging {

/// The head of the file, as it is stored.
struct IconHead {
    std::uint16_t reserved, type, count;
};
constexpr std::uint16_t kIconType = 1;

/// A picture in the directory, as it is stored.
struct IconEntry {
    BYTE width, height;  ///< 0 is 256
    BYTE colours, reserved;
    std::uint16_t planes, bitCount;
    std::uint32_t size, offset;
};
static_assert(sizeof(IconHead) == 6 && sizeof(IconEntry) == 16);

/// As CImageHelper::ReadIcon says. @throws PictureError
std::vector<NewDib> DecodeIcon(Bytes file);

/// As CImageHelper::WriteIcon says, one piece after the other. False, with nothing written, when there is nothing that can
/// be. @throws what `write` throws
bool EncodeIcon(std::span<const CDIBitmap* const> pictures, const std::function<void(Bytes)>& write);

}  // namespace qv::imaging
