#pragma once

/// @file Taking "%" escapes out of a text.

#include <string>
#include <string_view>

namespace qv {

/// For each "%" from left to right: if two hexadecimal digits follow, every occurrence of those three bytes in the text
/// becomes the byte that they stand for, and the walk goes on at the same position. Takes time in line with the text.
std::string DecodeUrl(std::string_view text);

}  // namespace qv
