#include "imaging/PlainRows.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "imaging/DibFormat.h"
#include "qvcommon/ImageHelper.h"

namespace qv::imaging {

std::optional<PlainRows> PlainRows::Of(const CDIBitmap& bitmap) {
    if (!bitmap.m_info || !IsFormat(bitmap.m_info->header)) return std::nullopt;
    PlainRows plain;
    plain.m_info = *bitmap.m_info;
    DibHeader& header = plain.m_info.header;
    const std::size_t colours = CDIBitmap::GetPalEntries(header);
    if (HasRunLengths(header)) {
        if (plain.m_made = bitmap.DecodedRows(plain.m_info); !plain.m_made) return std::nullopt;
    } else {
        if (!bitmap.HoldsRows(bitmap.PresentRowSize())) return std::nullopt;
        if (!bitmap.m_padded) plain.m_made = bitmap.CopyPaddedRows();
    }
    if (header.bitCount <= 8)
        std::fill(plain.m_info.colours + std::min(colours, DibInfo::capacity), std::end(plain.m_info.colours),
                  DibColour{});
    header.planes = 1;
    header.imageSize = header.coloursUsed = header.coloursImportant = 0;
    plain.m_rows = plain.m_made ? plain.m_made.get() : bitmap.m_bits.get();
    plain.m_pitch = CDIBitmap::GetBytesPerLine(header.bitCount, header.width);
    return plain;
}

std::int64_t PlainRows::Height() const {
    return std::abs(std::int64_t{m_info.header.height});
}

const BYTE* PlainRows::Row(std::int64_t y) const {
    return m_rows + (m_info.header.height < 0 ? y : Height() - 1 - y) * m_pitch;
}

NewDib::NewDib(int width, int height, int bits)
    : info(std::make_unique<DibInfo>()), pitch(CDIBitmap::GetBytesPerLine(bits, width)) {
    DibHeader& header = info->header;
    header = {sizeof header, width, height, 1, static_cast<std::uint16_t>(bits), kNoCompression, 0, 0, 0, 0, 0};
    if (bits == 32) {
        header.compression = kMasksWithAlpha;
        std::memcpy(info->colours, kAlphaMasks, sizeof kAlphaMasks);
    }
    rows = std::make_unique_for_overwrite<BYTE[]>(static_cast<std::size_t>(pitch * height));
    for (BYTE* row = rows.get(); row != rows.get() + pitch * height; row += pitch)
        std::memset(row + pitch - sizeof(DWORD), 0, sizeof(DWORD));
}

void NewDib::SetGreyColours() {
    const int shades = 1 << info->header.bitCount;
    for (int i = 0; i < shades; ++i) {
        const auto grey = static_cast<BYTE>(i * 255 / (shades - 1));
        info->colours[i] = {grey, grey, grey, 0};
    }
}

void NewDib::MoveTo(CDIBitmap& target) {
    CDIBitmap made;  // complete before the target changes
    made.m_bitsSize = static_cast<std::size_t>(pitch * info->header.height);
    made.m_info = std::move(info);
    made.m_bits = std::move(rows);
    made.m_padded = 1;
    made.CreatePalette();
    target.TakeFrom(made);
}

bool IsPictureSize(std::int64_t width, std::int64_t height) {
    return width > 0 && height > 0 && width <= CImageHelper::longestSide && height <= CImageHelper::longestSide &&
           width * height <= CImageHelper::mostPixels;
}

}  // namespace qv::imaging
