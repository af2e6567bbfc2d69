#pragma once

#include <cstddef>
#include <string_view>

namespace qv::tool {

struct Utf8Character {
    char32_t code;
    std::size_t length;  ///< in bytes; 0 for a byte that is no part of a character, which is the code then
};

/// The character that a text begins with, which must not be empty.
Utf8Character FirstCharacter(std::string_view utf8);

}  // namespace qv::tool
