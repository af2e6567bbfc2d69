#pragma once

/// @file A byte as two hexadecimal digits.

#include <optional>
#include <string>
#include <string_view>

#include "platform/Ascii.h"

namespace qv {

enum class HexCase { Upper, Lower };

/// AppendHex(out, '\n') appends "0A".
inline void AppendHex(std::string& out, unsigned char byte, HexCase letters = HexCase::Upper) {
    const char* const digits = letters == HexCase::Upper ? "0123456789ABCDEF" : "0123456789abcdef";
    out += digits[byte >> 4];
    out += digits[byte & 15];
}

inline void AppendHex(std::string& out, char byte, HexCase letters = HexCase::Upper) {
    AppendHex(out, static_cast<unsigned char>(byte), letters);
}

/// Two upper-case digits for each byte.
inline std::string HexText(std::string_view bytes) {
    std::string text;
    text.reserve(2 * bytes.size());
    for (const char byte : bytes) AppendHex(text, byte);
    return text;
}

/// 0 to 15 for a digit, in either case; -1 for any other character.
constexpr int HexDigitValue(char c) {
    if (ascii::IsDigit(c)) return c - '0';
    const char lower = ascii::ToLower(c);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

constexpr bool IsHexDigit(char c) {
    return HexDigitValue(c) >= 0;
}

/// Returns the byte encoded by the two digits at `position`, which may be beyond the end; nullopt if there are not two.
constexpr std::optional<char> HexByteAt(std::string_view text, std::size_t position) {
    if (position > text.size() || text.size() - position < 2) return std::nullopt;
    const int high = HexDigitValue(text[position]), low = HexDigitValue(text[position + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    return static_cast<char>(high << 4 | low);
}

}  // namespace qv
