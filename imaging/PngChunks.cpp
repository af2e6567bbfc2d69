#include "imaging/PngChunks.h"

#include <algorithm>

#include "imaging/PlainRows.h"
#include "qvcommon/Checksum.h"

namespace qv::imaging {
namespace {

constexpr std::uint32_t kLongestChunk = 0x7FFFFFFF;
// The maximum compression of Deflate: 258 bytes take at least two one-bit codes.
constexpr std::uint64_t kBestCompression = 1032;

[[noreturn]] void ThrowDamaged(const char* what) {
    throw PictureError{std::string("damaged PNG picture: ") + what};
}

void Check(bool holds, const char* what) {
    if (!holds) ThrowDamaged(what);
}

bool HasDepth(int colour, int depth) {
    switch (colour) {
        case kPngGrey: return depth == 1 || depth == 2 || depth == 4 || depth == 8 || depth == 16;
        case kPngPalette: return depth == 1 || depth == 2 || depth == 4 || depth == 8;
        case kPngRgb:
        case kPngGreyAlpha:
        case kPngRgbAlpha: return depth == 8 || depth == 16;
        default: return false;
    }
}

class PngParser {
public:
    PngFile Parse(Bytes file) {
        if (!IsPng(file)) throw PictureError{"not a PNG picture"};
        m_rest = file.subspan(kPngSignature.size());
        while (Next()) Take();
        CheckWhole();
        return std::move(m_file);
    }

private:
    // Returns false at the last chunk.
    bool Next() {
        if (m_rest.size() < kChunkHead + kChunkTail) ThrowEndsEarly();
        const std::uint32_t length = BigEndian32(m_rest.data());
        Check(length <= kLongestChunk, "length of a chunk");
        if (length > m_rest.size() - kChunkHead - kChunkTail) ThrowEndsEarly();
        const auto* const text = reinterpret_cast<const char*>(m_rest.data());
        m_name = {text + 4, 4};
        m_content = m_rest.subspan(kChunkHead, length);
        const std::uint32_t checksum = BigEndian32(m_content.data() + length);
        Check(MemCRC(std::string_view(text + 4, 4 + std::size_t{length})) == checksum, "checksum");
        m_rest = m_rest.subspan(kChunkHead + length + kChunkTail);
        return m_name != "IEND";
    }

    void Take() {
        Check((m_file.header.width == 0) == (m_name == "IHDR"), "header");
        if (m_name == "IHDR") return TakeHeader();
        if (m_name == "IDAT") {
            Check(m_file.data.empty() || m_wasData, "order of chunks");
            m_file.data.push_back(m_content);
        } else {
            TakeOther();
        }
        m_wasData = m_name == "IDAT";
    }

    void TakeHeader() {
        Check(m_content.size() == 13, "header");
        const std::uint32_t width = BigEndian32(m_content.data()), height = BigEndian32(m_content.data() + 4);
        if (!IsPictureSize(width, height))
            throw PictureError{"a PNG picture of " + std::to_string(width) + " by " + std::to_string(height) +
                               " pixels is not read"};
        const BYTE *const kinds = m_content.data() + 8, interlacing = kinds[4];
        m_file.header = {static_cast<int>(width), static_cast<int>(height), kinds[0], kinds[1], interlacing == 1};
        Check(HasDepth(kinds[1], kinds[0]) && kinds[2] == 0 && kinds[3] == 0 && interlacing <= 1, "header");
    }

    void TakeOther() {
        const bool isEarly = m_file.data.empty();
        if (m_name == "PLTE") {
            Check(isEarly && m_content.size() % 3 == 0 && !m_content.empty() && m_content.size() <= 768, "palette");
            if (m_file.header.colour == kPngPalette) m_file.palette = m_content;
        } else if (m_name == "tRNS") {
            Check(isEarly, "order of chunks");
            TakeTransparency();
        } else if (m_name == "pHYs") {
            constexpr BYTE metres = 1;
            Check(m_content.size() == 9, "density");
            if (m_content[8] == metres) {
                m_file.horizontalPerMetre = static_cast<LONG>(BigEndian32(m_content.data()) & kLongestChunk);
                m_file.verticalPerMetre = static_cast<LONG>(BigEndian32(m_content.data() + 4) & kLongestChunk);
            }
        } else {
            constexpr char mayBeIgnored = 0x20;
            if (!(m_name[0] & mayBeIgnored)) throw PictureError{"a PNG picture with an unknown critical chunk"};
        }
    }

    // Pictures with alpha must not have the chunk, so it is ignored there.
    void TakeTransparency() {
        const int colour = m_file.header.colour;
        if (colour >= kPngGreyAlpha) return;
        const std::size_t size = m_content.size();
        Check(colour == kPngPalette ? size <= m_file.palette.size() / 3 : size == (colour == kPngGrey ? 2 : 6),
              "transparency");
        m_file.transparency = m_content;
    }

    void CheckWhole() {
        const PngHeader& header = m_file.header;
        Check(header.width > 0 && !m_file.data.empty(), "no pixels");
        if (header.colour == kPngPalette)
            Check(!m_file.palette.empty() && m_file.palette.size() / 3 <= std::size_t{1} << header.depth, "palette");
        std::uint64_t present = 0, needed = 0;
        for (const Bytes data : m_file.data) present += data.size();
        for (const PngPass& pass : PassesOf(header))
            if (pass.x < header.width && pass.y < header.height)
                needed += (header.RowBytes(pass.Columns(header.width)) + 1) * std::uint64_t(pass.Rows(header.height));
        if (needed > present * kBestCompression) ThrowEndsEarly();
    }

    [[noreturn]] static void ThrowEndsEarly() { throw PictureError{"damaged PNG picture: it ends early"}; }

    PngFile m_file;
    Bytes m_rest, m_content;
    std::string_view m_name;
    bool m_wasData = false;
};

}  // namespace

bool IsPng(Bytes file) {
    return file.size() >= kPngSignature.size() &&
           std::memcmp(file.data(), kPngSignature.data(), kPngSignature.size()) == 0;
}

PngFile ParsePng(Bytes file) {
    return PngParser().Parse(file);
}

}  // namespace qv::imaging
