#include <algorithm>
#include <cstdlib>

#include "imaging/Compositing.h"
#include "qvcommon/ImageHelper.h"

using namespace qv::imaging;

namespace {

/// The part of a picture at `position` that is within `limit`.
struct Overlap {
    Overlap(int position, int length, int limit)
        : begin(std::max(position, 0)),
          end(static_cast<int>(std::min<std::int64_t>(std::int64_t{position} + length, limit))) {}
    int begin, end;
};

struct Difference {
    Pixel channels;  ///< as an opaque pixel
    int greatest;
};

int Shown(Pixel pixel, int channel) {
    return (ChannelOf(pixel, channel) * AlphaOf(pixel) + 127) / 255;
}

Difference DifferenceOf(Pixel one, Pixel other) {
    const int alpha = std::abs(AlphaOf(one) - AlphaOf(other));
    Difference difference = {kOpaque, alpha};
    for (int channel = 0; channel < 3; ++channel) {
        const int here = std::max(alpha, std::abs(Shown(one, channel) - Shown(other, channel)));
        difference.channels |= static_cast<Pixel>(here) << (8 * channel);
        difference.greatest = std::max(difference.greatest, here);
    }
    return difference;
}

}  // namespace

BOOL CImageHelper::Blend(const CDIBitmap& under, const CDIBitmap& over, CDIBitmap& target, int x, int y, int opacity) {
    if (opacity < 0 || opacity > 255) return 0;
    std::optional<Raster> lower = Raster::Of(under);
    const std::optional<Raster> upper = Raster::Of(over);
    if (!lower || !upper) return 0;
    const Overlap columns(x, upper->Width(), lower->Width()), rows(y, upper->Height(), lower->Height());
    for (int row = rows.begin; row < rows.end; ++row)
        for (int column = columns.begin; column < columns.end; ++column) {
            Pixel& pixel = lower->Row(row)[column];
            pixel = Over(upper->Row(row - y)[column - x], pixel, opacity);
        }
    lower->StoreIn(target);
    return 1;
}

BOOL CImageHelper::Flatten(const CDIBitmap& source, CDIBitmap& target, DWORD colour) {
    std::optional<Raster> pixels = Raster::Of(source);
    if (!pixels) return 0;
    FlattenPixels(*pixels, colour);
    pixels->StoreIn(target);
    return 1;
}

BOOL CImageHelper::Compare(const CDIBitmap& one, const CDIBitmap& other, QvPictureDifference& difference, int tolerance,
                           CDIBitmap* picture) {
    std::optional<Raster> first = Raster::Of(one);
    const std::optional<Raster> second = Raster::Of(other);
    if (!first || !second || first->Width() != second->Width() || first->Height() != second->Height()) return 0;
    QvPictureDifference found;
    const Pixel* against = second->begin();
    for (Pixel& pixel : *first) {
        const Difference here = DifferenceOf(pixel, *against++);
        found.pixels += here.greatest > tolerance;
        found.greatest = std::max(found.greatest, here.greatest);
        pixel = here.channels;
    }
    if (picture) first->StoreIn(*picture);
    difference = found;
    return 1;
}

bool CImageHelper::AreEqual(const CDIBitmap& one, const CDIBitmap& other, int tolerance) {
    QvPictureDifference difference;
    return Compare(one, other, difference, tolerance) && difference.pixels == 0;
}
