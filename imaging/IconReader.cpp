#include <algorithm>

#include "imaging/DibFormat.h"
#include "imaging/Icon.h"
#include "imaging/Png.h"
#include "imaging/PngChunks.h"
#include "imaging/Raster.h"
#include "platform/DibRowReader.h"
#include "qvcommon/ImageHelper.h"

namespace qv::imaging {
namespace {

void CheckIcon(bool holds, const char* what) {
    if (!holds) throw PictureError{std::string("damaged icon: ") + what};
}

/// Removes and returns the first `size` bytes.
Bytes Take(Bytes& bytes, std::uint64_t size, const char* what) {
    CheckIcon(size <= bytes.size(), what);
    const Bytes taken = bytes.first(static_cast<std::size_t>(size));
    bytes = bytes.subspan(static_cast<std::size_t>(size));
    return taken;
}

std::uint64_t Pitch(std::int64_t width, int bits) {
    return (static_cast<std::uint64_t>(width) * static_cast<unsigned>(bits) + 31) / 32 * 4;
}

/// A bitmap whose header counts the rows of both the pixels and the mask.
class MaskedBitmap {
public:
    explicit MaskedBitmap(Bytes bytes) : m_rest(bytes) {
        DibHeader& header = m_info.header;
        header = LittleEndian<DibHeader>(Take(m_rest, sizeof header, "header of a picture"));
        const bool hasMasks = header.compression == kMasks;
        CheckIcon(header.size == sizeof header && IsFormat(header) &&
                      (header.compression == kNoCompression || hasMasks) && header.height % 2 == 0 &&
                      IsPictureSize(header.width, header.height / 2),
                  "header of a picture");
        header.height /= 2;
        const std::uint64_t most = header.bitCount <= 8 ? std::uint64_t{1} << header.bitCount : 0;
        const std::uint64_t used = header.coloursUsed ? header.coloursUsed : most;
        CheckIcon(used <= DibInfo::capacity, "colours of a picture");
        const Bytes table = Take(m_rest, hasMasks ? 3 * sizeof(DibColour) : used * sizeof(DibColour), "colours");
        std::memcpy(m_info.colours, table.data(), table.size());
        m_rows = Take(m_rest, Pitch(header.width, header.bitCount) * Height(), "rows");
        // Some writers omit the mask of pictures with alpha.
        m_mask = Take(m_rest, m_rest.empty() && header.bitCount == 32 ? 0 : Pitch(header.width, 1) * Height(), "mask");
    }

    std::int64_t PixelCount() const { return std::int64_t{m_info.header.width} * m_info.header.height; }

    NewDib Decode() {
        Raster pixels(m_info.header.width, m_info.header.height);
        if (!ReadAlpha(pixels)) {
            Read(m_info, pixels);
            ApplyMask(pixels);
        }
        return pixels.ToDib();
    }

private:
    std::uint64_t Height() const { return static_cast<std::uint64_t>(m_info.header.height); }

    // Returns false if no pixel has any alpha.
    bool ReadAlpha(Raster& pixels) const {
        if (m_info.header.bitCount != 32 || m_info.header.compression != kNoCompression) return false;
        DibInfo info = m_info;
        info.header.compression = kMasksWithAlpha;
        std::memcpy(info.colours, kAlphaMasks, sizeof kAlphaMasks);
        Read(info, pixels);
        return std::any_of(pixels.begin(), pixels.end(), [](Pixel pixel) { return AlphaOf(pixel) != 0; });
    }

    void Read(const DibInfo& info, Raster& pixels) const {
        const platform::DibRowReader reader(&info);
        for (int y = 0; y < pixels.Height(); ++y)
            reader.Read(RowOf(m_rows, reader.RowSize(), y), static_cast<std::size_t>(pixels.Width()), pixels.Row(y));
    }

    void ApplyMask(Raster& pixels) const {
        if (m_mask.empty()) return;
        for (int y = 0; y < pixels.Height(); ++y) {
            const BYTE* const mask = RowOf(m_mask, Pitch(pixels.Width(), 1), y);
            for (int x = 0; x < pixels.Width(); ++x)
                if (mask[x / 8] >> (7 - x % 8) & 1) pixels.Row(y)[x] = 0;
        }
    }

    // The bottom row comes first.
    const BYTE* RowOf(Bytes rows, std::uint64_t pitch, int y) const {
        return rows.data() + (m_info.header.height - 1 - y) * static_cast<std::ptrdiff_t>(pitch);
    }

    Bytes m_rest, m_rows, m_mask;
    DibInfo m_info = {};
};

/// Returns the bytes of all pictures. Pictures must not overlap, so that the file's size bounds the memory for all of
/// them.
std::vector<Bytes> PicturesIn(Bytes file) {
    Bytes rest = file;
    const auto head = rest.size() < sizeof(IconHead) ? IconHead{} : LittleEndian<IconHead>(rest);
    if (head.reserved != 0 || head.type != kIconType || head.count == 0) throw PictureError{"not an icon"};
    rest = rest.subspan(sizeof head);
    std::vector<Bytes> pictures;
    std::uint64_t all = 0;
    for (int i = 0; i < head.count; ++i) {
        const auto entry = LittleEndian<IconEntry>(Take(rest, sizeof(IconEntry), "directory"));
        CheckIcon(entry.offset <= file.size() && entry.size <= file.size() - entry.offset, "a picture beyond the end");
        all += entry.size;
        CheckIcon(all <= file.size(), "pictures that overlap");
        pictures.push_back(file.subspan(entry.offset, entry.size));
    }
    return pictures;
}

}  // namespace

std::vector<NewDib> DecodeIcon(Bytes file) {
    std::vector<NewDib> decoded;
    std::int64_t pixels = 0;
    const auto count = [&pixels](std::int64_t more) {
        pixels += more;
        CheckIcon(pixels <= CImageHelper::mostPixels, "too many pixels");
    };
    for (const Bytes bytes : PicturesIn(file)) {
        if (IsPng(bytes)) {
            const PngFile png = ParsePng(bytes);
            count(std::int64_t{png.header.width} * png.header.height);
            decoded.push_back(DecodePng(png));
        } else {
            MaskedBitmap bitmap(bytes);
            count(bitmap.PixelCount());
            decoded.push_back(bitmap.Decode());
        }
    }
    return decoded;
}

}  // namespace qv::imaging
