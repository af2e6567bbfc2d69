#include <algorithm>
#include <cstdint>

#include "imaging/DibFormat.h"
#include "imaging/PlainRows.h"
#include "imaging/RunLength.h"
#include "platform/Drawing.h"
#include "qvcommon/DIBitmap.h"

using namespace qv::imaging;

namespace {

bool Within(int first, int count, std::int64_t limit) {
    return first >= 0 && count > 0 && std::int64_t{first} + count <= limit;
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

// Passes the platform only the rows to draw, uncompressed: systems disagree on where a part of a bitmap begins.
BOOL CDIBitmap::DrawDIB(const CDC& target, int x, int y, int width, int height, int partX, int partY, int partWidth,
                        int partHeight) {
    if (width <= 0 || height <= 0) return 0;
    if (!Within(partX, partWidth, GetWidth()) || !Within(partY, partHeight, RowCount())) return 0;
    const auto plain = PlainRows::Of(*this);
    if (!plain) return 0;
    DibInfo info = plain->Info();
    if (info.header.compression == kMasksWithAlpha) info.header.compression = kMasks;
    const bool topDown = info.header.height < 0;
    const std::int64_t firstRow = topDown ? partY : RowCount() - partY - partHeight;
    info.header.height = topDown ? -partHeight : partHeight;
    const BYTE* const rows = plain->Rows() + firstRow * GetBytesPerLine(info.header.bitCount, GetWidth());
    return DrawOn(target, {&info, rows, partX, partWidth}, {x, y, width, height});
}

// Decodes run lengths to plain rows of 8 bits per pixel and updates the header; null if a small file claims to be a
// huge picture.
std::unique_ptr<BYTE[]> CDIBitmap::DecodedRows(DibInfo& info) const {
    constexpr std::int64_t always = 16 << 20, perByte = 1024;
    const std::int64_t pitch = GetBytesPerLine(8, GetWidth());
    const std::int64_t bound =
        std::min<std::int64_t>(always + static_cast<std::int64_t>(m_bitsSize) * perByte, PTRDIFF_MAX);
    if (pitch == 0 || RowCount() > bound / pitch) return nullptr;
    auto rows = std::make_unique<BYTE[]>(static_cast<std::size_t>(pitch * RowCount()));
    DecodeRunLengths({m_bits.get(), m_bitsSize}, info.header.compression == kRunLength4, GetWidth(), RowCount(), pitch,
                     rows.get());
    info.header.bitCount = 8;
    info.header.compression = kNoCompression;
    return rows;
}
