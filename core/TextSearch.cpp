#include "core/TextSearch.h"

#include <algorithm>

#include "platform/Ascii.h"

namespace qv {

using platform::CodePage;

namespace {

constexpr std::size_t kBlock = 64;
constexpr std::size_t kWindow = 4096;

unsigned char ByteAt(std::string_view text, std::size_t position) {
    return static_cast<unsigned char>(text[position]);
}

// Bytes by frequency in texts, the most common first; occurrences are detected by rare bytes.
std::size_t Rarity(unsigned char upper) {
    constexpr std::string_view common = " ETAOINSRHLDCUMFPGWYBVK.,-0\n\r\t1";
    return std::min(common.find(static_cast<char>(upper)), common.size());
}

// The non-ASCII characters that are ASCII letters in upper case: U+0131 is I, U+017F is S. No others exist.
bool HasLongLetter(std::string_view utf8) {
    return utf8.find("\xC4\xB1") != utf8.npos || utf8.find("\xC5\xBF") != utf8.npos;
}

}  // namespace

TextSearch::TextSearch(std::string_view text, std::string_view find, CaseRule rule)
    : m_text(text), m_find(find), m_reader(rule) {
    if (rule == CaseRule::Exact) {
        m_exact.emplace(text, find);
        return;
    }
    m_byBytes = !find.empty() && PrepareAnchors();
    m_longLetters = m_byBytes && MayHoldLongLetters();
}

// Bytes suffice if they are characters, and for an ASCII text in UTF-8. Otherwise a trail byte may look like a letter.
bool TextSearch::PrepareAnchors() {
    const bool asciiInUtf8 = m_reader.Page() == CodePage::Utf8 && m_reader.Bytes().complete && ascii::IsAscii(m_find);
    if (!m_reader.IsByBytes() && !asciiInUtf8) return false;
    m_upper.assign(m_find);
    for (char& c : m_upper) c = static_cast<char>(m_reader.Bytes().map[static_cast<unsigned char>(c)]);

    const std::size_t looked = std::min<std::size_t>(m_upper.size(), 256);
    std::size_t first = 0, second = 0;
    for (std::size_t i = 1; i < looked; ++i) {
        if (Rarity(ByteAt(m_upper, i)) >= Rarity(ByteAt(m_upper, first))) {
            second = first;
            first = i;
        } else if (second == first || Rarity(ByteAt(m_upper, i)) > Rarity(ByteAt(m_upper, second))) {
            second = i;
        }
    }
    return SetAnchor(m_first, first) && SetAnchor(m_second, second);
}

bool TextSearch::SetAnchor(Anchor& anchor, std::size_t offset) const {
    const auto& map = m_reader.Bytes().map;
    int count = 0;
    anchor.offset = offset;
    for (int i = 0; i < 256; ++i) {
        const auto byte = static_cast<unsigned char>(i);
        if (map[byte] != ByteAt(m_upper, offset)) continue;
        (count++ ? anchor.other : anchor.one) = byte;
    }
    if (count == 1) anchor.other = anchor.one;
    return count == 1 || count == 2;
}

bool TextSearch::MayHoldLongLetters() const {
    return !m_reader.IsByBytes() && m_upper.find_first_of("IS") != m_upper.npos;
}

Occurrence TextSearch::Find(std::size_t from) {
    if (m_exact) {
        const std::size_t found = m_exact->Find(from);
        return found == kNowhere ? Occurrence{} : Occurrence{found, m_find.size()};
    }
    m_origin = std::min(m_origin, from);
    if (m_find.empty()) return from <= m_text.size() ? Occurrence{from, 0} : Occurrence{};
    if (m_byBytes) {
        const Occurrence found = FindByBytes(from);
        if (m_byBytes) return found;
    }
    return FindByAutomaton(from);
}

// Works window by window, so that the slower checks are limited to the neighbourhood of the occurrence.
Occurrence TextSearch::FindByBytes(std::size_t from) {
    const std::size_t size = m_find.size();
    if (!m_longLetters) {
        const std::size_t found = ScanFor(from, m_text.size());
        return found == kNowhere ? Occurrence{} : Occurrence{found, size};
    }
    for (; from < m_text.size(); from += kWindow) {
        const std::size_t end = std::min(from + kWindow, m_text.size());
        const std::size_t found = ScanFor(from, end);
        if (!m_byBytes) return {};
        // An earlier occurrence takes at most two bytes for each byte of `find`.
        const std::size_t reach = (found == kNowhere ? end : found) + 2 * size;
        if (HasLongLetterBetween(from, reach)) {
            m_byBytes = false;
            return {};
        }
        if (found != kNowhere) return {found, size};
    }
    return {};
}

// Looks at each byte only once, because windows overlap by twice the length of `find`.
bool TextSearch::HasLongLetterBetween(std::size_t from, std::size_t end) {
    end = std::min(end, m_text.size());
    if (m_plainEnd > 0) from = std::max(from, m_plainEnd - 1);  // a letter may cross that end
    if (from >= end) return false;
    m_plainEnd = end;
    return HasLongLetter(m_text.substr(from, end - from));
}

// Returns the first occurrence that starts between `from` and `limit`, exclusive. Clears m_byBytes if comparisons
// become too expensive: most bytes of both texts are then alike.
std::size_t TextSearch::ScanFor(std::size_t from, std::size_t limit) {
    if (m_text.size() < m_find.size()) return kNowhere;
    limit = std::min(limit, m_text.size() - m_find.size() + 1);
    while (from < limit) {
        from = NextCandidate(from, limit);
        if (from == limit) break;
        const bool found = IsAt(from);
        if (m_compared > kWindow + 4 * (from - m_origin + m_find.size())) m_byBytes = false;
        if (found || !m_byBytes) return found ? from : kNowhere;
        ++from;
    }
    return kNowhere;
}

std::size_t TextSearch::NextCandidate(std::size_t from, std::size_t limit) const {
    const auto* const text = reinterpret_cast<const unsigned char*>(m_text.data());
    const unsigned char *a = text + m_first.offset, *b = text + m_second.offset;
    const unsigned char a1 = m_first.one, a2 = m_first.other, b1 = m_second.one, b2 = m_second.other;
    const auto matches = [&](std::size_t i) {
        return static_cast<unsigned char>(((a[i] == a1) | (a[i] == a2)) & ((b[i] == b1) | (b[i] == b2)));
    };
    for (; limit - from >= kBlock; from += kBlock) {
        unsigned char any = 0;
        for (std::size_t i = 0; i < kBlock; ++i) any |= matches(from + i);
        if (any) break;
    }
    while (from < limit && !matches(from)) ++from;
    return from;
}

bool TextSearch::IsAt(std::size_t position) {
    const auto& map = m_reader.Bytes().map;
    std::size_t i = 0;
    while (i < m_upper.size() && map[ByteAt(m_text, position + i)] == ByteAt(m_upper, i)) ++i;
    m_compared += i;
    return i == m_upper.size();
}

Occurrence TextSearch::FindByAutomaton(std::size_t from) {
    if (m_last && m_last.position >= from) return m_last;
    if (!m_automaton) {
        m_automaton.emplace(m_reader.ReadAll(m_find));
        m_starts.resize(m_automaton->Size());
    }
    if (from > m_read) {
        m_read = from;
        m_state = 0;
    }
    const std::size_t size = m_starts.size();
    while (m_read < m_text.size()) {
        const platform::CasedCharacter c = m_reader.Read(m_text, m_read);
        m_starts[m_count++ % size] = m_read;
        m_read += c.length;
        m_state = m_automaton->Next(m_state, c.code);
        if (m_state != size) continue;
        const std::size_t start = m_starts[m_count % size];
        m_last = {start, m_read - start};
        if (start >= from) return m_last;
    }
    return {};
}

}  // namespace qv
