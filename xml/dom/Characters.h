#pragma once

/// @file XML's character classes, as far as single bytes determine them: a byte from 0x80 on may be part of any name.

#include "platform/Ascii.h"

namespace qv::dom {

constexpr bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// Also true for an empty text.
constexpr bool IsBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), IsSpace);
}

/// Names here have no prefix: a colon is in neither class.
constexpr bool StartsName(char c) {
    return ascii::IsLetter(c) || c == '_' || !ascii::IsAscii(c);
}

constexpr bool ContinuesName(char c) {
    return StartsName(c) || ascii::IsDigit(c) || c == '-' || c == '.';
}

}  // namespace qv::dom
