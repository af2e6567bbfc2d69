#pragma once

/// @file Iterating over the characters of a text, and sets of characters.

#include <array>
#include <string_view>
#include <unordered_set>

#include "platform/Ascii.h"
#include "platform/Text.h"

namespace qv {

/// Calls `visit` with every character of the text, in order.
template <class Visit>
void ForEachCharacter(std::string_view text, Visit visit) {
    const platform::CodePage page = platform::CurrentCodePage();
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = platform::CharacterLength(text, i, page);
        visit(text.substr(i, length));
        i += length;
    }
}

/// Returns whether a whole character is a letter of the current locale, or 0 to 9.
inline bool IsLetterOrDigit(std::string_view character) {
    return ascii::IsDigit(character[0]) || platform::IsLetter(character);
}

/// The characters of a text, which is not owned and must not change.
class CharacterSet {
public:
    explicit CharacterSet(std::string_view characters) {
        ForEachCharacter(characters, [this](std::string_view c) {
            if (c.size() == 1)
                m_bytes[static_cast<unsigned char>(c[0])] = true;
            else
                m_longer.insert(c);
        });
    }

    bool Contains(std::string_view character) const {
        return character.size() == 1 ? m_bytes[static_cast<unsigned char>(character[0])] : m_longer.contains(character);
    }

private:
    std::array<bool, 256> m_bytes{};
    std::unordered_set<std::string_view> m_longer;
};

}  // namespace qv
