#pragma once

/// @file Between the handles, whose texts are in the process's code page, and the DOMs, whose texts are UTF-8.

#include <string>
#include <string_view>

namespace qv::dom {

/// What is no character of the code page becomes "?", but for UTF-8, where it stays for others to refuse.
std::string ToUtf8(std::string_view text);

/// What the code page does not hold becomes "?". The characters U+0080 to U+009F, which references to bytes make, are
/// these bytes in a code page of single bytes.
std::string ToCodePage(std::string_view utf8);

/// True when the character, in UTF-8, comes back as it went.
bool CodePageHolds(std::string_view character);
/// True when the code page holds every character there is.
bool CodePageHoldsAll();

}  // namespace qv::dom
