#pragma once

/// @file Separators and other ASCII characters in paths. In a double-byte code page the second byte of a character may
/// look like one of them.

#include <string_view>

namespace qv {

inline constexpr std::string_view kSeparators = "\\/";

/// Return the position of the first, or last, character of the text that is in `set`, which must be ASCII; npos if not
/// found.
std::size_t FindFirstOf(std::string_view text, std::string_view set, std::size_t from = 0);
std::size_t FindLastOf(std::string_view text, std::string_view set);
bool EndsWithOneOf(std::string_view text, std::string_view set);

}  // namespace qv
