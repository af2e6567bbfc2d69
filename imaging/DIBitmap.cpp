#include "qvcommon/DIBitmap.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "imaging/DibFormat.h"

using namespace qv::imaging;

CDIBitmap::~CDIBitmap() = default;

CBmpPalette::CBmpPalette(const CDIBitmap& bitmap) {
    if (!bitmap.m_info) return;
    m_count =
        static_cast<int>(std::min<std::size_t>(CDIBitmap::GetPalEntries(bitmap.m_info->header), DibInfo::capacity));
    std::copy_n(bitmap.m_info->colours, m_count, m_entries);
}

DibColour CBmpPalette::GetEntry(int index) const {
    if (index < 0 || index >= m_count) AfxThrowInvalidArgException();
    return m_entries[index];
}

BOOL CDIBitmap::CreatePalette() {
    constexpr int deepestWithPalette = 8;
    m_palette.reset();
    if (m_info && GetBitsPerPixel() <= deepestWithPalette) m_palette = std::make_unique<CBmpPalette>(*this);
    return m_palette != nullptr;
}

void CDIBitmap::TakeFrom(CDIBitmap& other) noexcept {
    m_info = std::move(other.m_info);
    m_bits = std::move(other.m_bits);
    m_palette = std::move(other.m_palette);
    m_padded = other.m_padded;
    m_bitsSize = std::exchange(other.m_bitsSize, 0);
}

int CDIBitmap::GetColorCount() const {
    switch (GetBitsPerPixel()) {
        case 1: return 2;
        case 4: return 16;
        case 8: return 256;
        default: return 0;
    }
}

DWORD CDIBitmap::GetPalEntries(const DibHeader& header) {
    if (header.coloursUsed) return header.coloursUsed;
    return header.bitCount < 32 ? DWORD{1} << header.bitCount : 0;
}

std::int64_t CDIBitmap::LastByte(int bitsPerPixel, int width) {
    return (std::int64_t{bitsPerPixel} * std::max(width, 0) + 7) / 8;
}

std::int64_t CDIBitmap::GetBytesPerLine(int bitsPerPixel, int width) {
    return (std::int64_t{bitsPerPixel} * std::max(width, 0) + 31) / 32 * 4;
}

std::int64_t CDIBitmap::RowCount() const {
    return std::abs(std::int64_t{GetHeight()});
}

bool CDIBitmap::HoldsRows(std::int64_t rowSize) const {
    if (!m_info || !m_bits || HasRunLengths(m_info->header) || GetWidth() < 0) return false;
    return rowSize == 0 || RowCount() <= static_cast<std::int64_t>(m_bitsSize) / rowSize;
}

std::int64_t CDIBitmap::PresentRowSize() const {
    return m_padded ? GetBytesPerLine(GetBitsPerPixel(), GetWidth()) : LastByte(GetBitsPerPixel(), GetWidth());
}

BOOL CDIBitmap::PadBits() {
    const std::int64_t padded = GetBytesPerLine(GetBitsPerPixel(), GetWidth());
    const std::int64_t packed = LastByte(GetBitsPerPixel(), GetWidth());
    if (!m_info || !m_bits || HasRunLengths(m_info->header)) return 0;
    if (m_padded || padded == packed) return 1;
    if (!HoldsRows(padded)) return 0;
    // Rows only move up, so the last one moves first and none is overwritten before it has moved.
    for (std::int64_t row = RowCount() - 1; row >= 0; --row) {
        BYTE* const target = m_bits.get() + row * padded;
        std::memmove(target, m_bits.get() + row * packed, static_cast<std::size_t>(packed));
        std::fill(target + packed, target + padded, BYTE{0});
    }
    return 1;
}

BOOL CDIBitmap::UnPadBits() {
    const std::int64_t padded = GetBytesPerLine(GetBitsPerPixel(), GetWidth());
    const std::int64_t packed = LastByte(GetBitsPerPixel(), GetWidth());
    if (!m_info || !m_bits || HasRunLengths(m_info->header)) return 0;
    if (!m_padded || padded == packed) return 1;
    if (!HoldsRows(padded)) return 0;
    for (std::int64_t row = 1; row < RowCount(); ++row)
        std::memmove(m_bits.get() + row * packed, m_bits.get() + row * padded, static_cast<std::size_t>(packed));
    return 1;
}

std::unique_ptr<BYTE[]> CDIBitmap::CopyPaddedRows() const {
    const std::int64_t padded = GetBytesPerLine(GetBitsPerPixel(), GetWidth()), size = PresentRowSize();
    if (padded * RowCount() > PTRDIFF_MAX) throw std::bad_alloc();
    auto rows = std::make_unique<BYTE[]>(static_cast<std::size_t>(padded * RowCount()));
    if (padded == 0) return rows;  // without a width there may be billions of rows
    for (std::int64_t row = 0; row < RowCount(); ++row)
        std::memcpy(rows.get() + row * padded, m_bits.get() + row * size, static_cast<std::size_t>(size));
    return rows;
}
