#pragma once

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "qvcommon/Checksum.h"

/// @file PNG files of any shape, without compression.

namespace qv::test {

inline std::string BigEndian(std::uint32_t number) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift);
    return bytes;
}

inline std::string Chunk(const std::string& name, const std::string& content) {
    return BigEndian(static_cast<std::uint32_t>(content.size())) + name + content +
           BigEndian(static_cast<std::uint32_t>(MemCRC(name + content)));
}

/// A zlib stream of blocks that are stored.
inline std::string StoredStream(const std::string& data) {
    std::string stream = "\x78\x01";
    for (std::size_t at = 0; at == 0 || at < data.size(); at += 0xFFFF) {
        const std::string block = data.substr(at, 0xFFFF);
        const auto size = static_cast<unsigned>(block.size());
        stream += static_cast<char>(at + 0xFFFF >= data.size());
        for (const unsigned half : {size, ~size})
            stream.append({static_cast<char>(half), static_cast<char>(half >> 8)});
        stream += block;
    }
    std::uint32_t low = 1, high = 0;
    for (const char c : data) {
        low = (low + static_cast<unsigned char>(c)) % 65521;
        high = (high + low) % 65521;
    }
    return stream + BigEndian(high << 16 | low);
}

struct PngRecipe {
    int width = 1, height = 1, depth = 8, colour = 2;
    bool interlaced = false;
    std::function<unsigned(int x, int y, int channel)> sample = [](int, int, int) { return 0u; };
    std::string before = {};  ///< chunks between header and data

    int Channels() const { return colour == 2 ? 3 : colour == 4 ? 2 : colour == 6 ? 4 : 1; }
};

/// A row with one of the filters.
inline std::string FilteredRow(const std::string& row, const std::string& above, int filter, std::size_t step) {
    std::string out(1, static_cast<char>(filter));
    for (std::size_t i = 0; i < row.size(); ++i) {
        const auto at = [&](const std::string& bytes, std::size_t back) {
            return i < back || i - back >= bytes.size() ? 0 : static_cast<unsigned char>(bytes[i - back]);
        };
        const int left = at(row, step), up = at(above, 0), corner = at(above, step), estimate = left + up - corner;
        const int far[] = {std::abs(estimate - left), std::abs(estimate - up), std::abs(estimate - corner)};
        const int paeth = far[0] <= far[1] && far[0] <= far[2] ? left : far[1] <= far[2] ? up : corner;
        const int guesses[] = {0, left, up, (left + up) / 2, paeth};
        out += static_cast<char>(at(row, 0) - guesses[filter]);
    }
    return out;
}

inline std::string PngData(const PngRecipe& r) {
    struct Lattice {
        int x, y, stepX, stepY;
    };
    std::vector<Lattice> passes = {{0, 0, 1, 1}};
    if (r.interlaced)
        passes = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4}, {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};
    const int bits = r.depth * r.Channels();
    std::string data;
    int filter = 0;
    for (const Lattice& pass : passes) {
        std::string above;
        for (int y = pass.y; y < r.height && pass.x < r.width; y += pass.stepY) {
            std::string row;
            int used = 0;
            for (int x = pass.x; x < r.width; x += pass.stepX)
                for (int c = 0; c < r.Channels(); ++c)
                    for (int bit = r.depth; bit-- > 0; ++used) {
                        if (used % 8 == 0) row += '\0';
                        row.back() = static_cast<char>(row.back() | (r.sample(x, y, c) >> bit & 1) << (7 - used % 8));
                    }
            data += FilteredRow(row, above, filter++ % 5, bits < 8 ? 1 : static_cast<std::size_t>(bits / 8));
            above = row;
        }
    }
    return data;
}

inline std::string PngHead(const PngRecipe& r) {
    return BigEndian(static_cast<std::uint32_t>(r.width)) + BigEndian(static_cast<std::uint32_t>(r.height)) +
           std::string{static_cast<char>(r.depth), static_cast<char>(r.colour), 0, 0, static_cast<char>(r.interlaced)};
}

inline const std::string kPngStart = "\x89PNG\r\n\x1A\n";

inline std::string PngBytes(const PngRecipe& r) {
    return kPngStart + Chunk("IHDR", PngHead(r)) + r.before + Chunk("IDAT", StoredStream(PngData(r))) +
           Chunk("IEND", "");
}

}  // namespace qv::test
