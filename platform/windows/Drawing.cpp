#include "platform/Drawing.h"

#include <algorithm>
#include <climits>
#include <cstddef>

#include "platform/windows/UniqueHandle.h"

namespace qv::platform {
namespace {

using UniqueContext = UniqueResource<HDC, sys::DeleteDC>;
using UniqueBitmap = UniqueResource<HBITMAP, sys::DeleteObject>;

// Creates a section of 32-bit pixels, top-down.
UniqueBitmap MakeSection(HDC context, int width, int height, std::uint32_t*& pixels) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    UniqueBitmap bitmap(sys::CreateDIBSection(context, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    pixels = static_cast<std::uint32_t*>(bits);
    return bitmap;
}

// Copies the area to the caller, without the byte that the system leaves undefined.
void CopyArea(const std::uint32_t* pixels, const PixelBuffer& target, const DrawArea& area) {
    const int left = std::max(area.x, 0), top = std::max(area.y, 0);
    const auto right = static_cast<int>(std::min<long long>(area.x + static_cast<long long>(area.width), target.width));
    const auto bottom =
        static_cast<int>(std::min<long long>(area.y + static_cast<long long>(area.height), target.height));
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            target.pixels[static_cast<std::ptrdiff_t>(y) * target.pitch + x] =
                pixels[static_cast<std::ptrdiff_t>(y) * target.width + x] & 0xFFFFFF;
}

bool IsVisible(HDC dc, const DrawArea& area) {
    const auto end = [](int start, int size) {
        return static_cast<LONG>(std::min<long long>(start + static_cast<long long>(size), LONG_MAX));
    };
    const RECT rectangle = {area.x, area.y, end(area.x, area.width), end(area.y, area.height)};
    const auto visible = sys::RectVisible(dc, &rectangle);
    return !visible.ok() || visible.value();
}

}  // namespace

bool DrawOnContext(void* context, const DibRows& source, const DrawArea& area) {
    const auto dc = static_cast<HDC>(context);
    const DWORD type = sys::GetObjectType(dc).value();
    const bool draws = type == OBJ_DC || type == OBJ_MEMDC, records = type == OBJ_METADC || type == OBJ_ENHMETADC;
    if (!draws && !records) return false;
    const auto* info = static_cast<const BITMAPINFO*>(source.info);
    const int rows = std::abs(info->bmiHeader.biHeight);
    const int mode = ::SetStretchBltMode(dc, COLORONCOLOR);
    const auto drawn = sys::StretchDIBits(dc, area.x, area.y, area.width, area.height, source.firstColumn, 0,
                                          source.columns, rows, source.rows, info, DIB_RGB_COLORS, SRCCOPY);
    if (mode) ::SetStretchBltMode(dc, mode);
    return drawn.ok() || (draws && !IsVisible(dc, area));  // no rows are drawn then, which is no failure
}

bool DrawOnPixels(const PixelBuffer& target, const DibRows& source, const DrawArea& area) {
    const UniqueContext context(sys::CreateCompatibleDC(nullptr));
    if (!context) return false;
    std::uint32_t* pixels = nullptr;
    const UniqueBitmap bitmap = MakeSection(context.Get(), target.width, target.height, pixels);
    if (!bitmap) return false;
    const HGDIOBJ before = ::SelectObject(context.Get(), bitmap.Get());
    const bool drawn = DrawOnContext(context.Get(), source, area);
    ::GdiFlush();
    if (drawn) CopyArea(pixels, target, area);
    ::SelectObject(context.Get(), before);
    return drawn;
}

}  // namespace qv::platform
