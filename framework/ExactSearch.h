#pragma once

/// @file Finding a text in another one byte by byte, matching whole characters.

#include <cstddef>
#include <optional>
#include <string_view>

#include "framework/PatternAutomaton.h"
#include "platform/Text.h"

namespace qv {

/// Returns true if bytes of the text may be trail bytes of characters and yet look like characters themselves. Never in
/// UTF-8.
bool HasTrailBytes(std::string_view text);

/// Returns true if the bytes of `find` may occur in the text as a part of a character: in UTF-8 only if they begin within
/// a character, or end within one.
bool MayMatchPart(std::string_view text, std::string_view find);

/// Iterates over the occurrences of one text in another. All calls together are O(n) in both texts, for any input;
/// construction is almost free. Keeps references to both texts, which must not change.
class ExactSearch {
public:
    ExactSearch(std::string_view text, std::string_view find) : m_text(text), m_find(find) {}

    static constexpr std::size_t kNowhere = std::string_view::npos;

    /// Returns the first occurrence at or after `from`, which must not decrease between calls. The empty text matches
    /// everywhere, including the end.
    std::size_t Find(std::size_t from) {
        if (m_find.empty()) return from <= m_text.size() ? from : kNowhere;
        const std::size_t found = FindBytes(from);
        return found == kNowhere || IsPlainlyWhole(found) ? found : FindWhole(found);
    }

private:
    // Returns whether ASCII around and within the occurrence proves that it splits no character, in any code page.
    bool IsPlainlyWhole(std::size_t found) const {
        const auto ascii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
        const std::size_t size = m_find.size();
        return (found == 0 || ascii(m_text[found - 1])) && ascii(m_find[0]) && ascii(m_find[size - 1]) &&
               (size == 1 || ascii(m_find[size - 2]));
    }

    std::size_t FindBytes(std::size_t from) {
        return m_find.size() == 1 ? m_text.find(m_find[0], from) : FindString(from);
    }

    std::size_t FindString(std::size_t from);
    std::size_t FindWhole(std::size_t found);
    std::size_t FindByAutomaton(std::size_t from);
    bool SpendsTooMuch(std::size_t from);
    bool IsTooDear(std::size_t from) const;
    bool IsWhole(std::size_t position);

    static constexpr std::size_t kGlance = 8;  // bytes whose comparison is not counted

    std::string_view m_text, m_find;

    // If more is compared than skipped since the first counted comparison, the automaton takes over.
    std::size_t m_spent = 0, m_origin = 0;
    std::optional<PatternAutomaton> m_automaton;
    std::size_t m_read = 0, m_state = 0, m_last = kNowhere;

    std::optional<bool> m_isChecked;                // whether occurrences may be parts of characters
    std::size_t m_boundary = 0, m_endBoundary = 0;  // character boundaries in the text
};

/// Returns the first occurrence of a text in another one, as found by ExactSearch.
inline std::size_t FindExact(std::string_view text, std::string_view find, std::size_t from = 0) {
    return ExactSearch(text, find).Find(from);
}

}  // namespace qv
