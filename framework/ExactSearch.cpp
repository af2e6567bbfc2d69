#include "framework/ExactSearch.h"

#include <algorithm>
#include <cstring>

#include "platform/Ascii.h"

namespace qv {

using platform::CharacterLength;
using platform::CodePage;

bool HasTrailBytes(std::string_view text) {
    return platform::CurrentCodePage() == CodePage::DoubleByte && !ascii::IsAscii(text);
}

bool MayMatchPart(std::string_view text, std::string_view find) {
    const CodePage page = platform::CurrentCodePage();
    if (page != CodePage::Utf8) return page == CodePage::DoubleByte && !ascii::IsAscii(text);
    const auto isInner = [&](std::size_t i) { return (static_cast<unsigned char>(find[i]) & 0xC0) == 0x80; };
    if (find.empty() || isInner(0)) return !find.empty();
    std::size_t last = find.size() - 1;
    while (isInner(last)) --last;
    return !ascii::IsAscii(find[last]) && CharacterLength(find, last, page) == 1;
}

// Returns the first occurrence at or after `found` that splits no character.
std::size_t ExactSearch::FindWhole(std::size_t found) {
    if (!m_isChecked) m_isChecked = MayMatchPart(m_text, m_find);
    if (!*m_isChecked) return found;
    while (found != kNowhere && !IsWhole(found)) {
        SpendsTooMuch(found);
        found = FindBytes(found + 1);
    }
    return found;
}

// An occurrence must begin and end at character boundaries. Both positions only move forward, so all occurrences
// together take linear time.
bool ExactSearch::IsWhole(std::size_t position) {
    const CodePage page = platform::CurrentCodePage();
    while (m_boundary < position) m_boundary += CharacterLength(m_text, m_boundary, page);
    if (m_boundary != position) return false;
    const std::size_t end = position + m_find.size();
    m_endBoundary = std::max(m_endBoundary, m_boundary);
    while (m_endBoundary < end) m_endBoundary += CharacterLength(m_text, m_endBoundary, page);
    return m_endBoundary == end;
}

bool ExactSearch::IsTooDear(std::size_t from) const {
    constexpr std::size_t kCredit = 4096;
    return m_automaton || (m_spent > kCredit && m_spent - kCredit > 4 * (from - m_origin + m_find.size()));
}

bool ExactSearch::SpendsTooMuch(std::size_t from) {
    if (!m_spent) m_origin = from;
    m_spent += m_find.size();
    return IsTooDear(from + 1);
}

// Searches for the first byte and compares the rest. Highly repetitive texts are left to the automaton.
std::size_t ExactSearch::FindString(std::size_t from) {
    const std::size_t size = m_find.size();
    if (m_text.size() < size) return kNowhere;
    if (m_spent && IsTooDear(from)) return FindByAutomaton(from);
    const char *const text = m_text.data(), *const find = m_find.data();
    const std::size_t last = m_text.size() - size;
    for (; from <= last; ++from) {
        if (text[from] != find[0]) {
            const void* const next = std::memchr(text + from, find[0], last - from + 1);
            if (!next) return kNowhere;
            from = static_cast<std::size_t>(static_cast<const char*>(next) - text);
        }
        if (text[from + 1] != find[1]) continue;
        if (!std::memcmp(text + from + 2, find + 2, size - 2)) return from;
        if (size > kGlance && !std::memcmp(text + from, find, kGlance) && SpendsTooMuch(from))
            return FindByAutomaton(from + 1);
    }
    return kNowhere;
}

std::size_t ExactSearch::FindByAutomaton(std::size_t from) {
    if (m_last != kNowhere && m_last >= from) return m_last;
    if (!m_automaton) {
        std::vector<char32_t> units;
        units.reserve(m_find.size());
        for (const char c : m_find) units.push_back(static_cast<unsigned char>(c));
        m_automaton.emplace(std::move(units));
    }
    if (from > m_read) {
        m_read = from;
        m_state = 0;
    }
    while (m_read < m_text.size()) {
        m_state = m_automaton->Next(m_state, static_cast<unsigned char>(m_text[m_read++]));
        if (m_state != m_find.size()) continue;
        m_last = m_read - m_find.size();
        if (m_last >= from) return m_last;
    }
    m_last = kNowhere;
    return kNowhere;
}

}  // namespace qv
