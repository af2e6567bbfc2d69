#pragma once

/// @file The code page 1252 and its case rules, for the locale that has no characters beyond ASCII of its own.

#include <array>
#include <cstddef>

namespace qv::platform {

/// The characters of Windows-1252 from 0x80 to 0x9F; the rest of it is Latin-1. Unassigned bytes stand for themselves.
inline constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

inline char16_t FromWindows1252(unsigned char byte) {
    return byte >= 0x80 && byte <= 0x9F ? kWindows1252[byte - 0x80u] : byte;
}

/// -1 for a character that the code page does not have.
inline int ToWindows1252(char16_t unit) {
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) return unit;
    for (std::size_t i = 0; i < kWindows1252.size(); ++i)
        if (kWindows1252[i] == unit) return static_cast<int>(0x80 + i);
    return -1;
}

/// Windows-1252 keeps its pairs of letters 32 apart, but for four.
constexpr unsigned char LowerWindows1252(unsigned char byte) {
    if ((byte >= 'A' && byte <= 'Z') || (byte >= 0xC0 && byte <= 0xDE && byte != 0xD7)) return byte + 32;
    if (byte == 0x8A || byte == 0x8C || byte == 0x8E) return byte + 16;
    return byte == 0x9F ? 0xFF : byte;
}

constexpr unsigned char UpperWindows1252(unsigned char byte) {
    if ((byte >= 'a' && byte <= 'z') || (byte >= 0xE0 && byte <= 0xFE && byte != 0xF7)) return byte - 32;
    if (byte == 0x9A || byte == 0x9C || byte == 0x9E) return byte - 16;
    return byte == 0xFF ? 0x9F : byte;
}

inline bool IsLetterWindows1252(unsigned char byte) {
    return LowerWindows1252(byte) != byte || UpperWindows1252(byte) != byte || byte == 0x83 || byte == 0xAA ||
           byte == 0xB5 || byte == 0xBA || byte == 0xDF;
}

}  // namespace qv::platform
