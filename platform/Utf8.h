#pragma once

/// @file UTF-8 as RFC 3629 defines it: no overlong forms, no surrogates, nothing above U+10FFFF.

#include <cstddef>
#include <string>
#include <string_view>

namespace qv::platform {

struct Utf8Character {
    char32_t code = 0;       ///< the byte itself if it is not part of a well-formed character
    std::size_t length = 1;  ///< in bytes
    bool wellFormed = false;
};

/// Decodes the character at `position`, which must be within the text.
Utf8Character DecodeUtf8(std::string_view text, std::size_t position);

void AppendUtf8(std::string& out, char32_t code);

/// Convert to and from UTF-16. Bytes that are not part of a character, and lone surrogates, become "?".
std::u16string Utf8ToWide(std::string_view text);
std::string WideToUtf8(std::u16string_view text);

/// Returns a copy in which every well-formed character is replaced by `map(code)`; other bytes are unchanged.
template <class Map>
std::string MapUtf8(std::string_view text, Map map) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const Utf8Character c = DecodeUtf8(text, i);
        if (c.wellFormed)
            AppendUtf8(out, map(c.code));
        else
            out += text[i];
        i += c.length;
    }
    return out;
}

}  // namespace qv::platform
