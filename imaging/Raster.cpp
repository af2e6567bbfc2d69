#include "imaging/Raster.h"

#include <algorithm>

#include "imaging/PixelRows.h"
#include "imaging/PlainRows.h"
#include "platform/DibRowReader.h"

namespace qv::imaging {

std::optional<Raster> Raster::Of(const CDIBitmap& bitmap) {
    const auto rows = PlainRows::Of(bitmap);
    if (!rows || !IsPictureSize(rows->Info().header.width, rows->Height())) return std::nullopt;
    const platform::DibRowReader reader(&rows->Info());
    Raster raster(rows->Info().header.width, static_cast<int>(rows->Height()));
    for (int y = 0; y < raster.Height(); ++y)
        reader.Read(rows->Row(y), static_cast<std::size_t>(raster.Width()), raster.Row(y));
    return raster;
}

bool Raster::IsOpaque() const {
    // Row by row, without a test for each pixel.
    for (int y = 0; y < m_height; ++y) {
        Pixel all = kOpaque;
        for (int x = 0; x < m_width; ++x) all &= Row(y)[x];
        if (AlphaOf(all) != 255) return false;
    }
    return true;
}

NewDib Raster::ToDib() const {
    NewDib dib(m_width, m_height, IsOpaque() ? 24 : 32);
    for (int y = 0; y < m_height; ++y) PutPixels(Row(y), m_width, dib.info->header.bitCount, dib.Row(y));
    return dib;
}

void Raster::StoreGreyIn(CDIBitmap& target) const {
    if (!IsOpaque()) return StoreIn(target);
    NewDib dib(m_width, m_height, 8);
    dib.SetGreyColours();
    for (int y = 0; y < m_height; ++y) PutPixels(Row(y), m_width, 8, dib.Row(y));
    dib.MoveTo(target);
}

}  // namespace qv::imaging
