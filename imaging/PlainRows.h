#pragma once

#include <memory>
#include <optional>

#include "qvcommon/DIBitmap.h"

namespace qv::imaging {

/// A bitmap's rows, uncompressed and padded: its own where it has them so, else made.
class PlainRows {
public:
    /// The bitmap has to outlive the result and stay as it is. Nullopt when it is empty or lacks rows, has a depth or
    /// compression that no bitmap has, or claims to be far larger than its run lengths are.
    static std::optional<PlainRows> Of(const CDIBitmap& bitmap);
    /// As it is; null for an empty bitmap.
    static const DibHeader* HeaderOf(const CDIBitmap& bitmap) {
        return bitmap.m_info ? &bitmap.m_info->header : nullptr;
    }

    /// The bitmap's header and colours, with the depth of these rows. Its sizes and counts of colours are 0, and colours
    /// that the bitmap does not have are black.
    const DibInfo& Info() const { return m_info; }
    /// In the order that the sign of the height says.
    const BYTE* Rows() const { return m_rows; }
    std::int64_t Height() const;
    /// The row at `y` from the top.
    const BYTE* Row(std::int64_t y) const;

private:
    DibInfo m_info = {};
    std::unique_ptr<BYTE[]> m_made;
    const BYTE* m_rows = nullptr;
    std::int64_t m_pitch = 0;
};

/// A bitmap that is being made: 1, 4, 8 or 24 bits per pixel, or 32 with a mask of alpha, the bottom row first.
struct NewDib {
    /// Colours are black, and so is the padding; the pixels have no value. @throws std::bad_alloc
    NewDib(int width, int height, int bits);

    /// The row at `y` from the top.
    BYTE* Row(int y) { return rows.get() + (info->header.height - 1 - std::int64_t{y}) * pitch; }
    /// Grey from black to white, as many shades as the depth has.
    void SetGreyColours();
    /// Puts it in the place of what the target holds.
    void MoveTo(CDIBitmap& target);

    std::unique_ptr<DibInfo> info;
    std::unique_ptr<BYTE[]> rows;
    std::int64_t pitch;
};

/// Whether pictures of this size are made: see CImageHelper.
bool IsPictureSize(std::int64_t width, std::int64_t height);

}  // namespace qv::imaging
