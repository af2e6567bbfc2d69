#include "html/Glossary.h"

#include <algorithm>

#include "core/CaseRule.h"
#include "core/PatternSet.h"
#include "framework/CharacterSet.h"

namespace qv::html {
namespace {

using platform::CharacterLength;
using platform::CodePage;

bool IsLetter(std::string_view text, std::size_t position, char lower, char upper) {
    return position < text.size() && (text[position] == lower || text[position] == upper);
}

std::size_t SkipPlural(std::string_view text, std::size_t position) {
    if (IsLetter(text, position, 'e', 'E') && IsLetter(text, position + 1, 's', 'S')) return position + 2;
    return IsLetter(text, position, 's', 'S') ? position + 1 : position;
}

bool EndsWord(std::string_view text, std::size_t end, CodePage page) {
    end = SkipPlural(text, end);
    return end >= text.size() || !IsLetterOrDigit(text.substr(end, CharacterLength(text, end, page)));
}

// Returns the last character of a text that is not empty.
std::string_view LastCharacter(std::string_view text, CodePage page) {
    std::size_t begin = text.size() - 1;
    if (page == CodePage::Utf8) {
        for (std::size_t length = 2; length <= std::min<std::size_t>(text.size(), 4); ++length)
            if (CharacterLength(text, text.size() - length, page) == length) begin = text.size() - length;
    } else if (page == CodePage::DoubleByte) {
        // Lead and trail bytes share values: only a scan from the start distinguishes them.
        for (std::size_t i = 0; i < text.size(); i += CharacterLength(text, i, page)) begin = i;
    }
    return text.substr(begin);
}

/// Finds every occurrence of every term as a whole word, ordered by end.
class TermSearch {
public:
    TermSearch(std::string_view text, const CStringArray& terms) : m_text(text) {
        for (const CString& term : terms) m_patterns.push_back(m_reader.ReadAll(term));
    }

    std::vector<GlossaryHit> Run() {
        const PatternSet set(m_patterns);
        m_reader.IsByBytes() ? WalkBytes(set) : WalkCharacters(set);
        return std::move(m_hits);
    }

private:
    void WalkBytes(const PatternSet& set) {
        const auto& upper = m_reader.Bytes().map;
        PatternSet::State state = PatternSet::kStart;
        for (std::size_t i = 0; i < m_text.size();) {
            state = set.Next(state, upper[static_cast<unsigned char>(m_text[i++])]);
            set.ForEachFound(state, [&](std::size_t term) { Consider(term, i - m_patterns[term].size(), i); });
        }
    }

    void WalkCharacters(const PatternSet& set) {
        PatternSet::State state = PatternSet::kStart;
        std::vector<std::uint32_t> starts;  // of the characters read so far
        starts.reserve(m_text.size());
        for (std::size_t i = 0; i < m_text.size();) {
            const platform::CasedCharacter c = m_reader.Read(m_text, i);
            starts.push_back(static_cast<std::uint32_t>(i));
            i += c.length;
            state = set.Next(state, c.code);
            set.ForEachFound(state, [&](std::size_t term) {
                const std::size_t first = starts.size() - m_patterns[term].size();
                Consider(term, starts[first], i, first > 0 ? starts[first - 1] : 0);
            });
        }
    }

    // `before` is the start of the previous character.
    void Consider(std::size_t term, std::size_t begin, std::size_t end, std::size_t before) {
        const bool startsWord = begin == 0 || !IsLetterOrDigit(m_text.substr(before, begin - before));
        if (startsWord && EndsWord(m_text, end, m_reader.Page())) m_hits.push_back({begin, end, term});
    }
    void Consider(std::size_t term, std::size_t begin, std::size_t end) { Consider(term, begin, end, begin - 1); }

    std::string_view m_text;
    CaseReader m_reader{CaseRule::Ignore};
    std::vector<PatternSet::Units> m_patterns;
    std::vector<GlossaryHit> m_hits;
};

}  // namespace

bool IsWholeWord(std::string_view text, std::size_t begin, std::size_t end) {
    const CodePage page = platform::CurrentCodePage();
    if (begin > 0 && IsLetterOrDigit(LastCharacter(text.substr(0, begin), page))) return false;
    return EndsWord(text, end, page);
}

std::vector<GlossaryHit> FindTerms(std::string_view text, const CStringArray& terms) {
    std::vector<GlossaryHit> hits = TermSearch(text, terms).Run();
    // Occurrences of one term are already sorted by position.
    std::stable_sort(hits.begin(), hits.end(),
                     [](const GlossaryHit& a, const GlossaryHit& b) { return a.term < b.term; });
    std::vector<bool> taken(text.size() + 1);
    std::erase_if(hits, [&](const GlossaryHit& hit) {
        if (taken[hit.begin]) return true;
        std::fill(taken.begin() + static_cast<std::ptrdiff_t>(hit.begin),
                  taken.begin() + static_cast<std::ptrdiff_t>(hit.end) + 1, true);
        return false;
    });
    std::sort(hits.begin(), hits.end(), [](const GlossaryHit& a, const GlossaryHit& b) { return a.begin < b.begin; });
    return hits;
}

}  // namespace qv::html
