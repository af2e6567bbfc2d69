#include <algorithm>
#include <vector>

#include "imaging/Deflate.h"
#include "imaging/Png.h"
#include "imaging/PngFilter.h"
#include "imaging/Raster.h"
#include "platform/DibRowReader.h"
#include "qvcommon/Checksum.h"

namespace qv::imaging {
namespace {

bool IsGreyScale(const DibInfo& info) {
    NewDib scale(1, 1, info.header.bitCount);
    scale.SetGreyColours();
    const std::size_t shades = std::size_t{1} << info.header.bitCount;
    return std::equal(info.colours, info.colours + shades, scale.info->colours, [](DibColour one, DibColour other) {
        return one.red == other.red && one.green == other.green && one.blue == other.blue;
    });
}

class PngEncoder {
public:
    PngEncoder(const PlainRows& rows, const std::function<void(Bytes)>& write)
        : m_rows(rows), m_info(rows.Info()), m_reader(&m_info), m_write(write) {
        m_header.width = m_info.header.width;
        m_header.height = static_cast<int>(rows.Height());
        m_pixels.resize(static_cast<std::size_t>(m_header.width));
        const int bits = m_info.header.bitCount;
        m_header.depth = std::min(bits, 8);
        m_header.colour =
            bits <= 8 ? (IsGreyScale(m_info) ? kPngGrey : kPngPalette) : (ShowsAlpha() ? kPngRgbAlpha : kPngRgb);
    }

    void Encode() {
        m_write({reinterpret_cast<const BYTE*>(kPngSignature.data()), kPngSignature.size()});
        WriteHeader();
        if (m_header.colour == kPngPalette) WritePalette();
        WriteDensity();
        WriteData();
        WriteChunk("IEND", {});
    }

private:
    bool ShowsAlpha() {
        if (!m_reader.HasAlpha()) return false;
        for (int y = 0; y < m_header.height; ++y) {
            m_reader.Read(m_rows.Row(y), m_pixels.size(), m_pixels.data());
            Pixel all = kOpaque;
            for (const Pixel pixel : m_pixels) all &= pixel;
            if (AlphaOf(all) != 255) return true;
        }
        return false;
    }

    void WriteHeader() {
        BYTE content[13] = {};
        PutBigEndian32(static_cast<std::uint32_t>(m_header.width), content);
        PutBigEndian32(static_cast<std::uint32_t>(m_header.height), content + 4);
        content[8] = static_cast<BYTE>(m_header.depth);
        content[9] = static_cast<BYTE>(m_header.colour);
        WriteChunk("IHDR", content);
    }

    void WritePalette() {
        std::vector<BYTE> content;
        for (std::size_t i = 0, count = CountColours(); i < count; ++i) {
            const DibColour& colour = m_info.colours[i];
            content.insert(content.end(), {colour.red, colour.green, colour.blue});
        }
        WriteChunk("PLTE", content);
    }

    // Omits trailing black colours that no pixel uses.
    std::size_t CountColours() const {
        const std::size_t all = std::size_t{1} << m_header.depth;
        std::size_t count = all;
        const auto isBlack = [](DibColour colour) { return !(colour.red | colour.green | colour.blue); };
        while (count > 1 && isBlack(m_info.colours[count - 1])) --count;
        for (int y = 0; y < m_header.height && count < all; ++y)
            for (int x = 0; x < m_header.width; ++x) count = std::max<std::size_t>(count, Index(m_rows.Row(y), x) + 1);
        return count;
    }

    unsigned Index(const BYTE* row, int x) const {
        const int perByte = 8 / m_header.depth, shift = 8 - m_header.depth - x % perByte * m_header.depth;
        return row[x / perByte] >> shift & ((1u << m_header.depth) - 1);
    }

    void WriteDensity() {
        const LONG horizontal = m_info.header.horizontalPerMetre, vertical = m_info.header.verticalPerMetre;
        if (horizontal <= 0 || vertical <= 0) return;
        BYTE content[9] = {};
        PutBigEndian32(static_cast<std::uint32_t>(horizontal), content);
        PutBigEndian32(static_cast<std::uint32_t>(vertical), content + 4);
        content[8] = 1;  // per metre
        WriteChunk("pHYs", content);
    }

    void WriteData() {
        // Filters do not help for indices, and little for several pixels in one byte.
        const bool filters = m_header.depth == 8 && m_header.colour != kPngPalette;
        Deflater deflater(filters, [this](Bytes piece) { WriteChunk("IDAT", piece); });
        PngRows rows(m_header.RowBytes(m_header.width), m_header.FilterStep());
        PngFilterChoice choice(rows.Size());
        constexpr BYTE none = kNoFilter;
        for (int y = 0; y < m_header.height; ++y) {
            FillRow(m_rows.Row(y), rows.Row());
            if (filters) {
                deflater.Put(choice.Choose(rows));
            } else {
                deflater.Put({&none, 1});
                deflater.Put({rows.Row(), rows.Size()});
            }
            rows.Advance();
        }
        deflater.Finish();
    }

    void FillRow(const BYTE* row, BYTE* out) {
        if (m_header.colour == kPngGrey || m_header.colour == kPngPalette) {
            std::copy_n(row, m_header.RowBytes(m_header.width), out);
            return;
        }
        m_reader.Read(row, m_pixels.size(), m_pixels.data());
        const bool alpha = m_header.colour == kPngRgbAlpha;
        for (const Pixel pixel : m_pixels) {
            *out++ = static_cast<BYTE>(pixel >> 16);
            *out++ = static_cast<BYTE>(pixel >> 8);
            *out++ = static_cast<BYTE>(pixel);
            if (alpha) *out++ = static_cast<BYTE>(pixel >> 24);
        }
    }

    void WriteChunk(std::string_view name, Bytes content) {
        m_chunk.resize(kChunkHead + content.size() + kChunkTail);
        PutBigEndian32(static_cast<std::uint32_t>(content.size()), m_chunk.data());
        std::copy(name.begin(), name.end(), m_chunk.begin() + 4);
        std::copy(content.begin(), content.end(), m_chunk.begin() + kChunkHead);
        const std::string_view checked(reinterpret_cast<const char*>(m_chunk.data()) + 4, name.size() + content.size());
        PutBigEndian32(static_cast<std::uint32_t>(MemCRC(checked)), m_chunk.data() + kChunkHead + content.size());
        m_write(m_chunk);
    }

    const PlainRows& m_rows;
    const DibInfo& m_info;
    platform::DibRowReader m_reader;
    const std::function<void(Bytes)>& m_write;
    PngHeader m_header;
    std::vector<Pixel> m_pixels;
    std::vector<BYTE> m_chunk;
};

}  // namespace

void EncodePng(const PlainRows& rows, const std::function<void(Bytes)>& write) {
    PngEncoder(rows, write).Encode();
}

}  // namespace qv::imaging
