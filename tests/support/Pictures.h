#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <sstream>
#include <vector>

#include "qvcommon/ImageHelper.h"
#include "qvcommon/framework/Collections.h"
#include "tests/support/Bitmap.h"
#include "tests/support/DIBitmapTest.h"
#include "tests/support/TempFolder.h"

/// @file Pictures as rows of 0xAARRGGBB from the top, made and read without the library's own members for that.

namespace qv::test {

using PixelRows = std::vector<std::vector<std::uint32_t>>;

/// A bitmap with a mask of alpha, the top row first.
inline void Make(const PixelRows& rows, CDIBitmap& bitmap) {
    std::string bytes;
    for (const auto& row : rows) bytes += Words(row);
    const TempFolder folder;
    folder.Write("a.bmp", BitmapFile({.width = static_cast<int>(rows[0].size()),
                                      .height = -static_cast<int>(rows.size()),
                                      .bits = 32,
                                      .compression = 6,
                                      .table = Words({0xFF0000, 0xFF00, 0xFF, 0xFF000000}),
                                      .rows = bytes}));
    EXPECT_EQ(bitmap.Load(folder / "a.bmp"), 1);
}

/// The words of a command line, none of which holds a space.
inline CStringArray CommandLine(const std::string& line) {
    CStringArray words;
    std::istringstream rest(line);
    for (std::string word; rest >> word;) words.Add(word);
    return words;
}

/// Drawn by the system; opaque unless the bitmap is one that the library makes with alpha.
inline PixelRows RowsOf(Bitmap& bitmap) {
    const int width = bitmap.GetWidth(), height = std::abs(bitmap.GetHeight());
    std::vector<DWORD> pixels(static_cast<std::size_t>(width * height));
    if (bitmap.DrawDIB(CDC(CPixelBuffer{pixels.data(), width, height, width}), 0, 0) != 1) return {};
    PixelRows rows;
    for (int y = 0; y < height; ++y) {
        auto& row = rows.emplace_back(pixels.begin() + y * width, pixels.begin() + (y + 1) * width);
        const int place = bitmap.GetHeight() < 0 ? y : height - 1 - y;
        for (int x = 0; x < width; ++x) {
            const BYTE* const stored = bitmap.m_bits.get() + 4 * (place * width + x);
            const bool alpha = bitmap.GetBitsPerPixel() == 32 && bitmap.m_info->header.compression == 6;
            row[static_cast<std::size_t>(x)] |= std::uint32_t{alpha ? stored[3] : BYTE{255}} << 24;
        }
    }
    return rows;
}

}  // namespace qv::test
