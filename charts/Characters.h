#pragma once

#include <string>
#include <string_view>

/// @file Conversion of texts in the process's code page to what a picture may contain.
namespace qv::charts {

inline constexpr char32_t kEllipsis = 0x2026;

/// Returns the text's first 500 characters, with an ellipsis if more follow. White space becomes a space; control
/// characters and bidirectional marks are dropped; characters that XML does not allow become U+FFFD.
std::u32string Characters(std::string_view text);

/// Appends the characters in ASCII, escaped for text and for attributes in double quotes.
void AppendEscaped(std::string& out, std::u32string_view text);

/// Whether this is a combining mark, drawn over the previous character.
bool IsCombining(char32_t c);

}  // namespace qv::charts
