#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "imaging/PlainRows.h"

namespace qv::imaging {

using Pixel = std::uint32_t;  ///< 0xAARRGGBB, colours not multiplied by alpha

constexpr Pixel kOpaque = 0xFF000000;

inline int AlphaOf(Pixel pixel) {
    return static_cast<int>(pixel >> 24);
}
/// 0 blue, 1 green, 2 red, 3 alpha.
inline int ChannelOf(Pixel pixel, int channel) {
    return static_cast<int>(pixel >> (8 * channel) & 255);
}
/// Luma of ITU-R BT.601, rounded.
inline int LumaOf(Pixel pixel) {
    return (19595 * ChannelOf(pixel, 2) + 38470 * ChannelOf(pixel, 1) + 7471 * ChannelOf(pixel, 0) + 32768) >> 16;
}

/// The pixels of a picture, top row first.
class Raster {
public:
    /// The pixels are uninitialized. @throws std::bad_alloc
    Raster(int width, int height)
        : m_width(width),
          m_height(height),
          m_pixels(std::make_unique_for_overwrite<Pixel[]>(static_cast<std::size_t>(width) * height)) {}
    /// Nullopt if the bitmap cannot be read (see PlainRows), is empty, or exceeds the maximum picture size.
    static std::optional<Raster> Of(const CDIBitmap& bitmap);

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    Pixel* Row(int y) { return m_pixels.get() + static_cast<std::size_t>(y) * m_width; }
    const Pixel* Row(int y) const { return m_pixels.get() + static_cast<std::size_t>(y) * m_width; }
    const Pixel* begin() const { return m_pixels.get(); }
    const Pixel* end() const { return Row(m_height); }
    Pixel* begin() { return m_pixels.get(); }
    Pixel* end() { return Row(m_height); }

    bool IsOpaque() const;
    /// Returns a bitmap of 24 bits if all pixels are opaque, else of 32 with alpha.
    NewDib ToDib() const;
    void StoreIn(CDIBitmap& target) const { ToDib().MoveTo(target); }
    /// Stores the blue channel in a bitmap of 8 bits if all pixels are opaque, else in one of 32 with alpha.
    void StoreGreyIn(CDIBitmap& target) const;

private:
    int m_width, m_height;
    std::unique_ptr<Pixel[]> m_pixels;
};

}  // namespace qv::imaging
