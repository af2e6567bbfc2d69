#include "qvcommon/ImageHelper.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "imaging/Compositing.h"
#include "imaging/Geometry.h"
#include "imaging/PlainRows.h"
#include "imaging/Raster.h"
#include "imaging/Resample.h"

using namespace qv::imaging;

namespace {

/// Stores the result of an action on the source's pixels.
template <class Make>
BOOL StoreMade(const CDIBitmap& source, CDIBitmap& target, Make make) {
    std::optional<Raster> pixels = Raster::Of(source);
    if (!pixels) return 0;
    make(std::move(*pixels)).StoreIn(target);
    return 1;
}

int Embossed(const Raster& source, int x, int y) {
    const int right = std::min(x + 1, source.Width() - 1), below = std::min(y + 1, source.Height() - 1);
    const int left = std::max(x - 1, 0), above = std::max(y - 1, 0);
    return 128 + (LumaOf(source.Row(below)[right]) - LumaOf(source.Row(above)[left])) / 2;
}

bool IsWithin(int first, int count, int limit) {
    return first >= 0 && count > 0 && first <= limit - count;
}

}  // namespace

BOOL CImageHelper::GetSize(const CDIBitmap& picture, int& width, int& height) {
    const DibHeader* const header = PlainRows::HeaderOf(picture);
    if (!header) return 0;
    width = header->width;
    height = static_cast<int>(std::min<std::int64_t>(std::abs(std::int64_t{header->height}), INT32_MAX));
    return 1;
}

BOOL CImageHelper::TakePixels(const CPixelBuffer& drawn, CDIBitmap& target) {
    if (!drawn.pixels || drawn.pitch < drawn.width || !IsPictureSize(drawn.width, drawn.height)) return 0;
    Raster pixels(drawn.width, drawn.height);
    for (int y = 0; y < drawn.height; ++y)
        std::transform(drawn.pixels + std::ptrdiff_t{y} * drawn.pitch,
                       drawn.pixels + std::ptrdiff_t{y} * drawn.pitch + drawn.width, pixels.Row(y),
                       [](DWORD pixel) { return pixel | kOpaque; });
    pixels.StoreIn(target);
    return 1;
}

BOOL CImageHelper::MakeGrey(const CDIBitmap& source, CDIBitmap& target) {
    std::optional<Raster> pixels = Raster::Of(source);
    if (!pixels) return 0;
    for (Pixel& pixel : *pixels) pixel = (pixel & kOpaque) | static_cast<Pixel>(LumaOf(pixel)) * 0x010101;
    pixels->StoreGreyIn(target);
    return 1;
}

BOOL CImageHelper::Emboss(const CDIBitmap& source, CDIBitmap& target) {
    const std::optional<Raster> pixels = Raster::Of(source);
    if (!pixels) return 0;
    Raster relief(pixels->Width(), pixels->Height());
    for (int y = 0; y < relief.Height(); ++y)
        for (int x = 0; x < relief.Width(); ++x)
            relief.Row(y)[x] = (pixels->Row(y)[x] & kOpaque) | static_cast<Pixel>(Embossed(*pixels, x, y)) * 0x010101;
    relief.StoreGreyIn(target);
    return 1;
}

BOOL CImageHelper::Scale(const CDIBitmap& source, CDIBitmap& target, int width, int height, Filter filter) {
    if (!IsPictureSize(width, height)) return 0;
    return StoreMade(source, target, [&](const Raster& pixels) { return Scaled(pixels, width, height, filter); });
}

BOOL CImageHelper::Turn(const CDIBitmap& source, CDIBitmap& target, int quarters) {
    return StoreMade(source, target, [&](Raster pixels) { return Turned(std::move(pixels), (quarters % 4 + 4) % 4); });
}

BOOL CImageHelper::Rotate(const CDIBitmap& source, CDIBitmap& target, double degrees, DWORD background) {
    if (!std::isfinite(degrees)) return 0;
    double angle = std::fmod(degrees, 360);
    if (angle < 0) angle += 360;
    std::optional<Raster> pixels = Raster::Of(source);
    if (!pixels) return 0;
    std::optional<Raster> rotated = std::fmod(angle, 90) == 0
                                        ? Turned(std::move(*pixels), static_cast<int>(angle / 90) % 4)
                                        : Rotated(*pixels, angle, background);
    if (!rotated) return 0;
    if (background != transparent) FlattenPixels(*rotated, background);
    rotated->StoreIn(target);
    return 1;
}

BOOL CImageHelper::Mirror(const CDIBitmap& source, CDIBitmap& target, Direction direction) {
    return StoreMade(source, target, direction == horizontally ? MirroredLeftRight : MirroredUpDown);
}

BOOL CImageHelper::Crop(const CDIBitmap& source, CDIBitmap& target, int x, int y, int width, int height) {
    const std::optional<Raster> pixels = Raster::Of(source);
    if (!pixels || !IsWithin(x, width, pixels->Width()) || !IsWithin(y, height, pixels->Height())) return 0;
    Cropped(*pixels, x, y, width, height).StoreIn(target);
    return 1;
}
