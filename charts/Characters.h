#pragma once

#include <string>
#include <string_view>

/// @file Texts of the process's code page as what a picture may show of them.
namespace qv::charts {

inline constexpr char32_t kEllipsis = 0x2026;

/// The text's first 500 characters, and an ellipsis for the rest. White space becomes a blank; control characters and marks
/// of writing direction are dropped; what XML cannot hold becomes U+FFFD.
std::u32string Characters(std::string_view text);

/// Appends the characters for text and for attributes in double quotes, in ASCII.
void AppendEscaped(std::string& out, std::u32string_view text);

/// A mark that is drawn upon the character before it.
bool IsCombining(char32_t c);

}  // namespace qv::charts
