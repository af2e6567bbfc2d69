#pragma once

#include <cstddef>
#include <string_view>

namespace qv::tool {

struct Utf8Character {
    char32_t code;
    std::size_t length;  ///< in bytes; 0 for an invalid byte, which is then the code
};

/// Returns the first character of a text, which must not be empty.
Utf8Character FirstCharacter(std::string_view utf8);

}  // namespace qv::tool
