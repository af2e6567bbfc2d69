#pragma once

/// @file Targets for drawing pictures.

#include "qvcommon/framework/Types.h"

struct HDC__;
/// A device context of the platform. Null on systems without them.
using HDC = HDC__*;

/// A caller's 32-bit pixels: 0x00RRGGBB each, top-down. Not owned; must outlive what draws on them.
struct CPixelBuffer {
    DWORD* pixels;  ///< top left pixel
    int width;      ///< in pixels
    int height;     ///< in pixels
    int pitch;      ///< pixels from one row to the next, at least `width`
};

/// Either a device context of the system or, on every system, a caller's pixels. Owns neither.
class CDC {
public:
    /// Only Windows has contexts; elsewhere nothing can be drawn on one.
    explicit CDC(HDC context) : m_hDC(context) {}
    /// Draws on these pixels.
    explicit CDC(const CPixelBuffer& pixels) : m_pixels(pixels) {}

    /// Returns the context; null for a buffer of pixels.
    HDC GetSafeHdc() const { return m_hDC; }
    /// Returns the pixels; empty for a context.
    const CPixelBuffer& GetPixels() const { return m_pixels; }

    HDC m_hDC = nullptr;  ///< as GetSafeHdc returns it

private:
    CPixelBuffer m_pixels = {};
};
