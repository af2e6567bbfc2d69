#include <algorithm>

#include "imaging/DibFormat.h"
#include "imaging/RunLength.h"
#include "platform/Drawing.h"
#include "qvcommon/DIBitmap.h"

using namespace qv::imaging;

namespace {

bool Within(int first, int count, std::int64_t limit) {
    return first >= 0 && count > 0 && std::int64_t{first} + count <= limit;
}

// What the platform's contract asks of a header: no colour but those that the bitmap has, no field that says something
// else.
void Settle(DibInfo& info, std::size_t entries) {
    DibHeader& header = info.header;
    if (header.bitCount <= 8)
        std::fill(info.colours + std::min(entries, DibInfo::capacity), std::end(info.colours), DibColour{});
    if (header.compression == kMasksWithAlpha) header.compression = kMasks;
    header.planes = 1;
    header.imageSize = header.coloursUsed = header.coloursImportant = 0;
}

BOOL DrawOn(const CDC& target, const qv::platform::DibRows& rows, const qv::platform::DrawArea& area) {
    if (const CPixelBuffer& buffer = target.GetPixels(); buffer.pixels) {
        static_assert(sizeof(*buffer.pixels) == sizeof(std::uint32_t));
        auto* const pixels = reinterpret_cast<std::uint32_t*>(buffer.pixels);
        return qv::platform::DrawOnPixels({pixels, buffer.width, buffer.height, buffer.pitch}, rows, area);
    }
    return target.GetSafeHdc() && qv::platform::DrawOnContext(target.GetSafeHdc(), rows, area);
}

}  // namespace

BOOL CDIBitmap::DrawDIB(const CDC& target, int x, int y) {
    const std::int64_t rows = RowCount();
    if (rows > INT32_MAX) return 0;
    return DrawDIB(target, x, y, GetWidth(), static_cast<int>(rows));
}

BOOL CDIBitmap::DrawDIB(const CDC& target, int x, int y, int width, int height) {
    const std::int64_t rows = RowCount();
    if (rows > INT32_MAX) return 0;
    return DrawDIB(target, x, y, width, height, 0, 0, GetWidth(), static_cast<int>(rows));
}

// The platform draws plain rows, and all of those that it gets: the part's. So no system's notion of where a part of a
// bitmap begins has a say.
BOOL CDIBitmap::DrawDIB(const CDC& target, int x, int y, int width, int height, int partX, int partY, int partWidth,
                        int partHeight) {
    if (!m_info || !IsFormat(m_info->header) || width <= 0 || height <= 0) return 0;
    if (!Within(partX, partWidth, GetWidth()) || !Within(partY, partHeight, RowCount())) return 0;
    DibInfo info = *m_info;
    Settle(info, GetPalEntries(m_info->header));
    std::unique_ptr<BYTE[]> made;
    if (HasRunLengths(m_info->header)) {
        if (made = DecodedRows(info); !made) return 0;
    } else {
        if (!HoldsRows(PresentRowSize())) return 0;
        if (!m_padded) made = CopyPaddedRows();
    }
    const bool topDown = info.header.height < 0;
    const std::int64_t firstRow = topDown ? partY : RowCount() - partY - partHeight;
    info.header.height = topDown ? -partHeight : partHeight;
    const BYTE* const rows =
        (made ? made.get() : m_bits.get()) + firstRow * GetBytesPerLine(info.header.bitCount, GetWidth());
    return DrawOn(target, {&info, rows, partX, partWidth}, {x, y, width, height});
}

// The rows of run lengths as plain ones of 8 bits per pixel, which the header then says; null when a small file claims to
// be a huge picture.
std::unique_ptr<BYTE[]> CDIBitmap::DecodedRows(DibInfo& info) const {
    constexpr std::int64_t always = 16 << 20, perByte = 1024;
    const std::int64_t pitch = GetBytesPerLine(8, GetWidth());
    const std::int64_t bound = always + static_cast<std::int64_t>(m_bitsSize) * perByte;
    if (pitch == 0 || RowCount() > bound / pitch) return nullptr;
    auto rows = std::make_unique<BYTE[]>(static_cast<std::size_t>(pitch * RowCount()));
    DecodeRunLengths({m_bits.get(), m_bitsSize}, info.header.compression == kRunLength4, GetWidth(), RowCount(), pitch,
                     rows.get());
    info.header.bitCount = 8;
    info.header.compression = kNoCompression;
    return rows;
}
