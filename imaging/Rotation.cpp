#include <algorithm>
#include <cmath>

#include "imaging/Geometry.h"
#include "imaging/PlainRows.h"
#include "qvcommon/ImageHelper.h"

namespace qv::imaging {
namespace {

// Positions in the source are fixed-point numbers, so that rounding is the same on every system.
constexpr int kFraction = 32;
constexpr std::int64_t kOne = std::int64_t{1} << kFraction;

std::int64_t Fixed(double value) {
    return std::llround(value * static_cast<double>(kOne));
}

// The mean of four pixels, with weights whose sum is 65536.
class Mixer {
public:
    explicit Mixer(DWORD background)
        : m_opaque(background != CImageHelper::transparent), m_background(background & 0xFFFFFF) {}

    static Pixel Opaque(const Pixel (&pixels)[4], const unsigned (&weights)[4]) {
        Pixel result = kOpaque;
        for (int channel = 0; channel < 3; ++channel) {
            unsigned sum = 1 << 15;
            for (int i = 0; i < 4; ++i) sum += weights[i] * static_cast<unsigned>(ChannelOf(pixels[i], channel));
            result |= sum >> 16 << (8 * channel);
        }
        return result;
    }

    Pixel Mix(const Pixel (&pixels)[4], const unsigned (&weights)[4]) const {
        constexpr std::uint64_t full = std::uint64_t{65536} * 255;
        std::uint64_t shares[4], covered = 0;
        for (int i = 0; i < 4; ++i) covered += shares[i] = std::uint64_t{weights[i]} * (pixels[i] >> 24);
        const std::uint64_t uncovered = m_opaque ? full - covered : 0, all = covered + uncovered;
        if (all == 0) return 0;
        Pixel result = m_opaque ? kOpaque : static_cast<Pixel>((covered + 32768) >> 16) << 24;
        for (int channel = 0; channel < 3; ++channel) {
            std::uint64_t sum = uncovered * static_cast<unsigned>(ChannelOf(m_background, channel)) + all / 2;
            for (int i = 0; i < 4; ++i) sum += shares[i] * static_cast<unsigned>(ChannelOf(pixels[i], channel));
            result |= static_cast<Pixel>(sum / all) << (8 * channel);
        }
        return AlphaOf(result) ? result : 0;
    }

private:
    bool m_opaque;
    Pixel m_background;
};

class Rotation {
public:
    Rotation(const Raster& source, DWORD background) : m_source(source), m_mixer(background) {}

    // Returns the pixel at a position; pixel centres have integer coordinates.
    Pixel At(std::int64_t x, std::int64_t y) const {
        const std::int64_t column = x >> kFraction, row = y >> kFraction;
        const auto right = static_cast<unsigned>(x >> (kFraction - 8) & 255),
                   below = static_cast<unsigned>(y >> (kFraction - 8) & 255);
        const unsigned weights[4] = {(256 - right) * (256 - below), right * (256 - below), (256 - right) * below,
                                     right * below};
        const bool inside = column >= 0 && row >= 0 && column + 1 < m_source.Width() && row + 1 < m_source.Height();
        if (!inside) {
            const Pixel pixels[4] = {Source(column, row), Source(column + 1, row), Source(column, row + 1),
                                     Source(column + 1, row + 1)};
            return m_mixer.Mix(pixels, weights);
        }
        const Pixel *upper = m_source.Row(static_cast<int>(row)) + column, *lower = upper + m_source.Width();
        const Pixel pixels[4] = {upper[0], upper[1], lower[0], lower[1]};
        const bool opaque = AlphaOf(upper[0] & upper[1] & lower[0] & lower[1]) == 255;
        return opaque ? Mixer::Opaque(pixels, weights) : m_mixer.Mix(pixels, weights);
    }

private:
    Pixel Source(std::int64_t x, std::int64_t y) const {
        const bool inside = x >= 0 && y >= 0 && x < m_source.Width() && y < m_source.Height();
        return inside ? m_source.Row(static_cast<int>(y))[x] : 0;
    }

    const Raster& m_source;
    Mixer m_mixer;
};

}  // namespace

std::optional<Raster> Rotated(const Raster& source, double degrees, DWORD background) {
    const double sine = SinPi(degrees / 180), cosine = SinPi(degrees / 180 + 0.5);
    const auto extent = [&](double along, double across) {
        constexpr double slack = 1e-6;  // keeps rounding from adding a row
        return static_cast<std::int64_t>(std::ceil(std::abs(along * cosine) + std::abs(across * sine) - slack));
    };
    const std::int64_t width = extent(source.Width(), source.Height()),
                       height = extent(source.Height(), source.Width());
    if (!IsPictureSize(width, height)) return std::nullopt;
    const Rotation rotation(source, background);
    Raster result(static_cast<int>(width), static_cast<int>(height));
    const std::int64_t stepX = Fixed(cosine), stepY = -Fixed(sine);
    for (int y = 0; y < height; ++y) {
        // Maps the centre of the row's first pixel, relative to the middle of the result, to the source.
        const double fromLeft = 0.5 - static_cast<double>(width) / 2,
                     fromTop = y + 0.5 - static_cast<double>(height) / 2;
        std::int64_t atX = Fixed(cosine * fromLeft + sine * fromTop + source.Width() / 2.0 - 0.5);
        std::int64_t atY = Fixed(cosine * fromTop - sine * fromLeft + source.Height() / 2.0 - 0.5);
        for (int x = 0; x < width; ++x, atX += stepX, atY += stepY) result.Row(y)[x] = rotation.At(atX, atY);
    }
    return result;
}

}  // namespace qv::imaging
