#pragma once

/// @file Taking "%" escapes out of a text.

#include <optional>
#include <string>
#include <string_view>

namespace qv {

/// The byte that "%" and two hexadecimal digits at this position stand for; nothing if there are none.
std::optional<char> EscapedByteAt(std::string_view text, std::size_t position);

bool IsHexDigit(char c);

/// For each "%" from left to right: if two hexadecimal digits follow, every occurrence of those three bytes in the text
/// becomes the byte that they stand for, and the walk goes on at the same position. Takes time in line with the text.
std::string DecodeUrl(std::string_view text);

}  // namespace qv
