#include "platform/DibRowReader.h"

#include <cstdlib>
#include <cstring>

namespace qv::platform {
namespace {

constexpr std::uint32_t kOpaque = 0xFF000000, kMasksWithAlpha = 6;

}  // namespace

std::uint32_t DibRowReader::Channel::Of(std::uint32_t pixel) const {
    const std::uint32_t value = (pixel & m_mask) >> m_shift;
    if (m_bits >= 8) return value >> (m_bits - 8);
    if (m_bits == 0) return 0;
    std::uint32_t wide = value << (8 - m_bits);
    for (int bits = m_bits; bits < 8; bits *= 2) wide |= wide >> bits;
    return wide;
}

DibRowReader::DibRowReader(const void* info) {
    std::memcpy(&m_header, info, sizeof m_header);
    std::memcpy(m_table.data(), static_cast<const char*>(info) + sizeof m_header, sizeof m_table);
    const bool masks = m_header.compression != 0, words = m_header.bitCount == 16;
    const std::uint32_t red = masks ? m_table[0] : words ? 0x7C00 : 0xFF0000;
    const std::uint32_t green = masks ? m_table[1] : words ? 0x03E0 : 0x00FF00;
    const std::uint32_t blue = masks ? m_table[2] : words ? 0x001F : 0x0000FF;
    const std::uint32_t alpha = m_header.compression == kMasksWithAlpha ? m_table[3] : 0;
    m_red = Channel(red);
    m_green = Channel(green);
    m_blue = Channel(blue);
    m_alpha = Channel(alpha);
    m_hasAlpha = alpha != 0 && m_header.bitCount > 8;
    m_isPlain = red == 0xFF0000 && green == 0xFF00 && blue == 0xFF && (alpha == 0 || alpha == kOpaque);
}

int DibRowReader::Rows() const {
    return std::abs(m_header.height);
}

std::size_t DibRowReader::RowSize() const {
    return (static_cast<std::size_t>(m_header.width) * m_header.bitCount + 31) / 32 * sizeof(std::uint32_t);
}

std::uint32_t DibRowReader::Argb(const unsigned char* row, std::size_t x) const {
    switch (m_header.bitCount) {
        case 1: return m_table[row[x / 8] >> (7 - x % 8) & 1] | kOpaque;
        case 4: return m_table[row[x / 2] >> (x % 2 ? 0 : 4) & 15] | kOpaque;
        case 8: return m_table[row[x]] | kOpaque;
        case 16: return Masked(row + 2 * x, 2);
        case 24: row += 3 * x; return row[0] | std::uint32_t{row[1]} << 8 | std::uint32_t{row[2]} << 16 | kOpaque;
        default: return Masked(row + 4 * x, 4);
    }
}

std::uint32_t DibRowReader::Masked(const unsigned char* bytes, std::size_t size) const {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, bytes, size);
    if (m_isPlain) return m_hasAlpha ? pixel : pixel | kOpaque;
    const std::uint32_t alpha = m_hasAlpha ? m_alpha.Of(pixel) << 24 : kOpaque;
    return alpha | m_red.Of(pixel) << 16 | m_green.Of(pixel) << 8 | m_blue.Of(pixel);
}

void DibRowReader::Read(const unsigned char* row, std::size_t count, std::uint32_t* out) const {
    if (m_header.bitCount == 24) {  // the most common depth gets a loop without branches
        for (std::size_t i = 0; i < count; ++i, row += 3)
            out[i] = row[0] | std::uint32_t{row[1]} << 8 | std::uint32_t{row[2]} << 16 | kOpaque;
    } else if (m_header.bitCount == 32 && m_isPlain) {
        std::memcpy(out, row, count * sizeof *out);
        for (std::size_t i = 0; !m_hasAlpha && i < count; ++i) out[i] |= kOpaque;
    } else {
        for (std::size_t x = 0; x < count; ++x) out[x] = Argb(row, x);
    }
}

}  // namespace qv::platform
