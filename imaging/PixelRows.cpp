#include "imaging/PixelRows.h"

#include <cstring>

namespace qv::imaging {
namespace {

void PutBits(Pixel value, int bits, BYTE* row, int x) {
    const int perByte = 8 / bits, shift = 8 - bits - x % perByte * bits, mask = ((1 << bits) - 1) << shift;
    BYTE& byte = row[x / perByte];
    byte = static_cast<BYTE>((byte & ~mask) | (static_cast<int>(value) << shift & mask));
}

void PutTriple(Pixel pixel, BYTE* out) {
    out[0] = static_cast<BYTE>(pixel);
    out[1] = static_cast<BYTE>(pixel >> 8);
    out[2] = static_cast<BYTE>(pixel >> 16);
}

}  // namespace

void PutEachPixel(const Pixel* pixels, int count, int bits, BYTE* row, int first, int step) {
    for (int i = 0, x = first; i < count; ++i, x += step) switch (bits) {
            case 32: std::memcpy(row + 4 * std::size_t(x), pixels + i, sizeof *pixels); break;
            case 24: PutTriple(pixels[i], row + 3 * std::size_t(x)); break;
            case 8: row[x] = static_cast<BYTE>(pixels[i]); break;
            default: PutBits(pixels[i], bits, row, x);
        }
}

void PutPixels(const Pixel* pixels, int count, int bits, BYTE* row) {
    if (bits == 32) {
        std::memcpy(row, pixels, static_cast<std::size_t>(count) * sizeof *pixels);
    } else if (bits == 24) {
        for (int i = 0; i < count; ++i) PutTriple(pixels[i], row + 3 * std::size_t(i));
    } else {
        PutEachPixel(pixels, count, bits, row, 0, 1);
    }
}

}  // namespace qv::imaging
