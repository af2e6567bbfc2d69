#pragma once

/// @file A byte as "%" and two hexadecimal digits, the escape of addresses (RFC 3986, section 2.1) and of other names.

#include "platform/Hex.h"

namespace qv {

/// AppendPercent(out, '?') appends "%3F".
inline void AppendPercent(std::string& out, char byte, HexCase letters = HexCase::Upper) {
    out += '%';
    AppendHex(out, byte, letters);
}

/// Returns the byte encoded by the escape at `position`, which must be in the text; nullopt if there is no escape.
/// Digits may be in either case.
constexpr std::optional<char> PercentByteAt(std::string_view text, std::size_t position) {
    return text[position] == '%' ? HexByteAt(text, position + 1) : std::nullopt;
}

}  // namespace qv
