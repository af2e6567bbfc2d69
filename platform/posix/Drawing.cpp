#include "platform/Drawing.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace qv::platform {
namespace {

struct Header {
    std::uint32_t size;
    std::int32_t width, height;
    std::uint16_t planes, bitCount;
    std::uint32_t compression, rest[5];
};
static_assert(sizeof(Header) == 40);

// One colour of a pixel, widened to 8 bits by repeating its upper bits, or cut to its upper 8.
class Channel {
public:
    explicit Channel(std::uint32_t mask = 0)
        : m_mask(mask), m_shift(mask ? std::countr_zero(mask) : 0), m_bits(std::bit_width(mask >> m_shift)) {}

    std::uint32_t Of(std::uint32_t pixel) const {
        const std::uint32_t value = (pixel & m_mask) >> m_shift;
        if (m_bits >= 8) return value >> (m_bits - 8);
        if (m_bits == 0) return 0;
        std::uint32_t wide = value << (8 - m_bits);
        for (int bits = m_bits; bits < 8; bits *= 2) wide |= wide >> bits;
        return wide;
    }

private:
    std::uint32_t m_mask;
    int m_shift, m_bits;
};

// Gives the pixels of a row as 0x00RRGGBB.
class RowReader {
public:
    explicit RowReader(const void* info) {
        std::memcpy(&m_header, info, sizeof m_header);
        std::memcpy(m_table.data(), static_cast<const char*>(info) + sizeof m_header, sizeof m_table);
        const bool masks = m_header.compression != 0, words = m_header.bitCount == 16;
        m_red = Channel(masks ? m_table[0] : words ? 0x7C00 : 0xFF0000);
        m_green = Channel(masks ? m_table[1] : words ? 0x03E0 : 0x00FF00);
        m_blue = Channel(masks ? m_table[2] : words ? 0x001F : 0x0000FF);
    }

    int Rows() const { return std::abs(m_header.height); }
    // In bytes, padded.
    std::size_t RowSize() const {
        return (static_cast<std::size_t>(m_header.width) * m_header.bitCount + 31) / 32 * sizeof(std::uint32_t);
    }
    bool TopDown() const { return m_header.height < 0; }

    std::uint32_t Pixel(const unsigned char* row, std::size_t x) const {
        switch (m_header.bitCount) {
            case 1: return m_table[row[x / 8] >> (7 - x % 8) & 1] & 0xFFFFFF;
            case 4: return m_table[row[x / 2] >> (x % 2 ? 0 : 4) & 15] & 0xFFFFFF;
            case 8: return m_table[row[x]] & 0xFFFFFF;
            case 16: return Masked(row + 2 * x, 2);
            case 24: return row[3 * x] | row[3 * x + 1] << 8 | row[3 * x + 2] << 16;
            default: return Masked(row + 4 * x, 4);
        }
    }

private:
    std::uint32_t Masked(const unsigned char* bytes, std::size_t size) const {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, bytes, size);
        return m_red.Of(pixel) << 16 | m_green.Of(pixel) << 8 | m_blue.Of(pixel);
    }

    Header m_header;
    std::array<std::uint32_t, 256> m_table;  // blue in the lowest byte, as in a pixel
    Channel m_red, m_green, m_blue;
};

// Where an area's pixels of one direction come from, for those that lie within the target.
struct Span {
    Span(int position, int length, int limit, int sourceFirst, int sourceLength) : first(std::max(position, 0)) {
        const auto end = static_cast<int>(std::min<std::int64_t>(std::int64_t{position} + length, limit));
        for (std::int64_t at = first; at < end; ++at)
            from.push_back(sourceFirst +
                           static_cast<std::size_t>((2 * (at - position) + 1) * sourceLength / 2 / length));
    }

    int first;
    std::vector<std::size_t> from;
};

}  // namespace

bool DrawOnContext(void*, const DibRows&, const DrawArea&) {
    return false;
}

bool DrawOnPixels(const PixelBuffer& target, const DibRows& source, const DrawArea& area) {
    const RowReader reader(source.info);
    const Span columns(area.x, area.width, target.width, source.firstColumn, source.columns);
    const Span lines(area.y, area.height, target.height, 0, reader.Rows());
    std::uint32_t* out = target.pixels + static_cast<std::ptrdiff_t>(lines.first) * target.pitch + columns.first;
    for (const std::size_t line : lines.from) {
        const std::size_t row = reader.TopDown() ? line : reader.Rows() - 1 - line;
        const auto* const bytes = static_cast<const unsigned char*>(source.rows) + row * reader.RowSize();
        for (std::size_t i = 0; i < columns.from.size(); ++i) out[i] = reader.Pixel(bytes, columns.from[i]);
        out += target.pitch;
    }
    return true;
}

}  // namespace qv::platform
