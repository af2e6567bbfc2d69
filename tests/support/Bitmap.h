#pragma once

#include <cstdlib>

#include "tests/support/Metafile.h"

/// @file Bitmap files of any shape.

namespace qv::test {

struct BitmapRecipe {
    int width = 1, height = 1, bits = 24;
    std::uint32_t compression = 0, coloursUsed = 0;
    std::string table = {};  ///< masks and colours; colours of the depth are made up when it is empty
    std::string rows = {};   ///< made up when empty
};

inline std::size_t PaddedRow(int bits, int width) {
    return (static_cast<std::size_t>(bits) * static_cast<std::size_t>(width) + 31) / 32 * 4;
}

/// Colours that differ from index to index.
inline std::string ColourTable(std::uint32_t count) {
    std::vector<std::uint32_t> colours;
    for (std::uint32_t i = 0; i < count; ++i) colours.push_back((i * 0x35711Bu + 0x102030u) & 0xFFFFFF);
    return Words(colours);
}

/// A file with every field as the format demands.
inline std::string BitmapFile(BitmapRecipe r) {
    if (r.table.empty() && r.bits <= 8) r.table = ColourTable(r.coloursUsed ? r.coloursUsed : 1u << r.bits);
    const std::size_t row = PaddedRow(r.bits, r.width);
    if (r.rows.empty())
        for (std::size_t i = 0; i < row * static_cast<std::size_t>(std::abs(r.height)); ++i)
            r.rows += static_cast<char>(i * 37 + i / 251);
    const auto head = static_cast<std::uint32_t>(54 + r.table.size()), size = static_cast<std::uint32_t>(r.rows.size());
    const auto width = static_cast<std::uint32_t>(r.width), height = static_cast<std::uint32_t>(r.height);
    return "BM" +
           Words({head + size, 0, head, 40, width, height, 1u | static_cast<std::uint32_t>(r.bits) << 16, r.compression,
                  size, 2835, 2836, r.coloursUsed, 0}) +
           r.table + r.rows;
}

}  // namespace qv::test
