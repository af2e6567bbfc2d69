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

ExactSearch::ExactSearch(std::string_view text, std::string_view find)
    : m_text(text), m_find(find), m_trails(!find.empty() && platform::CurrentCodePage() == CodePage::DoubleByte) {}

std::size_t ExactSearch::FindLong(std::size_t from) {
    std::size_t found = FindBytes(from);
    while (m_trails && found != kNowhere && !IsWhole(found)) {
        m_spent += m_find.size();
        found = FindBytes(found + 1);
    }
    return found;
}

// An occurrence begins where a character does. If it ends with what may be half of one, the text has to have that byte alone.
bool ExactSearch::IsWhole(std::size_t position) {
    while (m_boundary < position) m_boundary += CharacterLength(m_text, m_boundary, CodePage::DoubleByte);
    if (m_boundary != position) return false;
    if (m_lastCharacter == kNowhere)
        for (std::size_t i = 0; i < m_find.size(); i += CharacterLength(m_find, i, CodePage::DoubleByte))
            m_lastCharacter = i;
    const std::size_t last = position + m_lastCharacter;
    return last + CharacterLength(m_text, last, CodePage::DoubleByte) == position + m_find.size();
}

bool ExactSearch::IsTooDear(std::size_t from) const {
    constexpr std::size_t kCredit = 4096;
    return m_spent > kCredit + 4 * (from - m_origin + m_find.size());
}

// Looks for the first byte and compares what follows. Texts that go on being alike are left to the automaton.
std::size_t ExactSearch::FindBytes(std::size_t from) {
    constexpr std::size_t kGlance = 8;
    m_origin = std::min(m_origin, from);
    if (m_automaton || IsTooDear(from)) return FindByAutomaton(from);
    const std::size_t size = m_find.size(), glance = std::min(size, kGlance);
    while (from < m_text.size() && m_text.size() - from >= size) {
        const std::size_t hit = m_text.substr(0, m_text.size() - size + 1).find(m_find[0], from);
        if (hit == kNowhere) return kNowhere;
        from = hit + 1;
        const char* const at = m_text.data() + hit;
        if (std::memcmp(at, m_find.data(), glance) != 0) continue;
        if (!std::memcmp(at + glance, m_find.data() + glance, size - glance)) return hit;
        m_spent += size;
        if (IsTooDear(from)) return FindByAutomaton(from);
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
