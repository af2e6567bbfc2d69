#pragma once

/// @file Decoding of "%" escapes.

#include <string>
#include <string_view>

namespace qv {

/// For each "%" from left to right: if two hexadecimal digits follow, every occurrence of those three bytes in the text
/// is replaced by the encoded byte, and decoding continues at the same position. O(n).
std::string DecodeUrl(std::string_view text);

}  // namespace qv
