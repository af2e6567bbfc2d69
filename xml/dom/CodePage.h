#pragma once

/// @file Conversions between the handles, which use the process's code page, and the DOMs, which use UTF-8.

#include <string>
#include <string_view>

namespace qv::dom {

/// Replaces bytes that are invalid in the code page with "?". If the code page is UTF-8 they are kept, for the caller
/// to refuse.
std::string ToUtf8(std::string_view text);

/// Replaces characters that the code page lacks with "?". In a single-byte code page, U+0080 to U+009F, which
/// references to bytes produce, become those bytes.
std::string ToCodePage(std::string_view utf8);

/// Whether the character, in UTF-8, survives the round trip.
bool CodePageHolds(std::string_view character);
/// Whether the code page has every Unicode character.
bool CodePageHoldsAll();

}  // namespace qv::dom
