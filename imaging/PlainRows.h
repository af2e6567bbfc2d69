#pragma once

#include <memory>
#include <optional>

#include "qvcommon/DIBitmap.h"

namespace qv::imaging {

/// A bitmap's rows, uncompressed and padded: the bitmap's own if they are in that form, else a decoded copy.
class PlainRows {
public:
    /// The bitmap must outlive the result and must not change. Returns nullopt if it is empty or lacks rows, has a
    /// depth or compression that the format does not have, or claims to be far larger than its run lengths.
    static std::optional<PlainRows> Of(const CDIBitmap& bitmap);
    /// The bitmap's own header; null for an empty bitmap.
    static const DibHeader* HeaderOf(const CDIBitmap& bitmap) {
        return bitmap.m_info ? &bitmap.m_info->header : nullptr;
    }

    /// The bitmap's header and colours, with the depth of these rows. Its sizes and colour counts are 0; missing
    /// colours are black.
    const DibInfo& Info() const { return m_info; }
    /// The sign of the header's height gives their order.
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

/// A bitmap under construction: 1, 4, 8 or 24 bits per pixel, or 32 with an alpha mask, bottom row first.
struct NewDib {
    /// Colours and padding are zero; the pixels are uninitialized. @throws std::bad_alloc
    NewDib(int width, int height, int bits);

    /// The row at `y` from the top.
    BYTE* Row(int y) { return rows.get() + (info->header.height - 1 - std::int64_t{y}) * pitch; }
    /// Sets greys from black to white, as many as the depth allows.
    void SetGreyColours();
    /// Replaces the content of the target. @throws std::bad_alloc, leaving the target unchanged
    void MoveTo(CDIBitmap& target);

    std::unique_ptr<DibInfo> info;
    std::unique_ptr<BYTE[]> rows;
    std::int64_t pitch;
};

/// Whether the library creates pictures of this size; see CImageHelper.
bool IsPictureSize(std::int64_t width, std::int64_t height);

}  // namespace qv::imaging
