#pragma once

/// @file What pictures are drawn on.

#include "qvcommon/framework/Types.h"

struct HDC__;
/// A device context of the platform. Null on systems that have none.
using HDC = HDC__*;

/// A caller's 32-bit pixels: 0x00RRGGBB each, the top row first. They have to outlive what draws on them.
struct CPixelBuffer {
    DWORD* pixels;  ///< the top left one
    int width;      ///< in pixels
    int height;     ///< in pixels
    int pitch;      ///< pixels from one row to the next, at least `width`
};

/// Either a device context of the system or, on every system, a caller's pixels. It owns neither.
class CDC {
public:
    /// Only Windows has contexts; elsewhere nothing can be drawn on one.
    explicit CDC(HDC context) : m_hDC(context) {}
    /// Draws on these pixels.
    explicit CDC(const CPixelBuffer& pixels) : m_pixels(pixels) {}

    /// The context; null when this is a buffer of pixels.
    HDC GetSafeHdc() const { return m_hDC; }
    /// Without pixels when this is a context.
    const CPixelBuffer& GetPixels() const { return m_pixels; }

    HDC m_hDC = nullptr;  ///< as GetSafeHdc returns it

private:
    CPixelBuffer m_pixels = {};
};
