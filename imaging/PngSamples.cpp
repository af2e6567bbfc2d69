#include "imaging/PngSamples.h"

#include <algorithm>

namespace qv::imaging {
namespace {

/// Converts a 16-bit sample to 8 bits, rounded.
Pixel Rounded(unsigned sample) {
    return (sample * 255 + 32895) >> 16;
}

unsigned Sample16(const BYTE* bytes) {
    return unsigned{bytes[0]} << 8 | bytes[1];
}

}  // namespace

PngSamples::PngSamples(const PngFile& file) : m_depth(file.header.depth), m_read(&PngSamples::ReadTable) {
    const bool wide = m_depth == 16;
    switch (file.header.colour) {
        case kPngRgb: m_read = wide ? &PngSamples::ReadChannels<3, 2> : &PngSamples::ReadChannels<3, 1>; break;
        case kPngGreyAlpha: m_read = wide ? &PngSamples::ReadChannels<2, 2> : &PngSamples::ReadChannels<2, 1>; break;
        case kPngRgbAlpha: m_read = wide ? &PngSamples::ReadChannels<4, 2> : &PngSamples::ReadChannels<4, 1>; break;
        default:
            if (wide)
                m_read = file.HasAlpha() ? &PngSamples::ReadChannels<1, 2> : &PngSamples::ReadGrey16;
            else
                FillTable(file);
    }
    if (file.header.colour != kPngPalette && !file.transparency.empty()) m_key = file.transparency.data();
}

void PngSamples::FillTable(const PngFile& file) {
    const unsigned count = 1u << m_depth;
    const bool grey = file.header.colour == kPngGrey, alpha = file.HasAlpha();
    const std::size_t colours = file.palette.size() / 3;
    for (unsigned i = 0; i < count; ++i) {
        const unsigned shade = i * 255 / (count - 1);
        if (!alpha) {
            m_table[i] = grey && m_depth == 2 ? i * 5 : i;  // 2 bits become 4
        } else if (grey) {
            m_table[i] = shade * 0x010101 | (Sample16(file.transparency.data()) == i ? 0 : kOpaque);
        } else {
            const BYTE* const colour = file.palette.data() + std::size_t{3} * i;
            const Pixel opacity = i < file.transparency.size() ? file.transparency[i] : 255;
            const Pixel known = i < colours ? Pixel{colour[0]} << 16 | Pixel{colour[1]} << 8 | colour[2] : 0;
            m_table[i] = known | opacity << 24;
        }
    }
}

void PngSamples::ReadTable(const BYTE* samples, int count, Pixel* out) const {
    const int perByte = 8 / m_depth, mask = (1 << m_depth) - 1;
    for (int x = 0; x < count; ++x) {
        const int shift = 8 - m_depth - x % perByte * m_depth;
        out[x] = m_table[static_cast<std::size_t>(samples[x / perByte] >> shift & mask)];
    }
}

void PngSamples::ReadGrey16(const BYTE* samples, int count, Pixel* out) const {
    for (int x = 0; x < count; ++x) out[x] = Rounded(Sample16(samples + std::size_t{2} * x));
}

template <int Channels, int Size>
void PngSamples::ReadChannels(const BYTE* samples, int count, Pixel* out) const {
    const auto narrow = [](const BYTE* sample) -> Pixel { return Size == 1 ? *sample : Rounded(Sample16(sample)); };
    const auto isKey = [this](const BYTE* pixel) {
        for (int c = 0; c < Channels; ++c) {
            const unsigned sample = Size == 1 ? pixel[c] : Sample16(pixel + c * Size);
            if (sample != Sample16(m_key + 2 * c)) return false;
        }
        return true;
    };
    for (int x = 0; x < count; ++x, samples += Channels * Size) {
        const Pixel first = narrow(samples), alpha = Channels % 2 ? 255 : narrow(samples + (Channels - 1) * Size);
        Pixel colour = first * 0x010101;
        if constexpr (Channels >= 3) colour = first << 16 | narrow(samples + Size) << 8 | narrow(samples + 2 * Size);
        out[x] = colour | alpha << 24;
        if (Channels % 2 && m_key && isKey(samples)) out[x] &= ~kOpaque;
    }
}

}  // namespace qv::imaging
