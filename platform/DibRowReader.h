#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace qv::platform {

/// Reads the pixels of uncompressed padded rows; the same on every system.
class DibRowReader {
public:
    /// The information header and 256 colours, as in DibRows; with compression 6 the fourth mask is the alpha mask.
    explicit DibRowReader(const void* info);

    int Rows() const;
    /// Returns the padded size in bytes.
    std::size_t RowSize() const;
    bool TopDown() const { return m_header.height < 0; }
    bool HasAlpha() const { return m_hasAlpha; }

    /// Returns a pixel as 0x00RRGGBB.
    std::uint32_t Pixel(const unsigned char* row, std::size_t x) const { return Argb(row, x) & 0xFFFFFF; }
    /// Reads the first `count` pixels of a row as 0xAARRGGBB; alpha is 255 unless it has a mask.
    void Read(const unsigned char* row, std::size_t count, std::uint32_t* out) const;

private:
    struct Header {
        std::uint32_t size;
        std::int32_t width, height;
        std::uint16_t planes, bitCount;
        std::uint32_t compression, rest[5];
    };
    static_assert(sizeof(Header) == 40);

    /// One channel of a pixel, widened to 8 bits by repeating its upper bits, or reduced to its upper 8.
    class Channel {
    public:
        explicit Channel(std::uint32_t mask = 0)
            : m_mask(mask), m_shift(mask ? std::countr_zero(mask) : 0), m_bits(std::bit_width(mask >> m_shift)) {}
        std::uint32_t Of(std::uint32_t pixel) const;

    private:
        std::uint32_t m_mask;
        int m_shift, m_bits;
    };

    std::uint32_t Argb(const unsigned char* row, std::size_t x) const;
    std::uint32_t Masked(const unsigned char* bytes, std::size_t size) const;

    Header m_header;
    std::array<std::uint32_t, 256> m_table;  // blue in the lowest byte, as in a pixel
    Channel m_red, m_green, m_blue, m_alpha;
    bool m_hasAlpha = false, m_isPlain = false;  // plain: masks that do not change a pixel
};

}  // namespace qv::platform
