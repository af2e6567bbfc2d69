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

// Only the term with the lowest index can win at a start. Leaves the hits sorted by start.
void KeepLowestTerms(std::vector<GlossaryHit>& hits) {
    std::sort(hits.begin(), hits.end(), [](const GlossaryHit& a, const GlossaryHit& b) {
        return a.begin != b.begin ? a.begin < b.begin : a.term < b.term;
    });
    const auto sameStart = [](const GlossaryHit& a, const GlossaryHit& b) { return a.begin == b.begin; };
    hits.erase(std::unique(hits.begin(), hits.end(), sameStart), hits.end());
}

/// Finds the occurrences of the terms as whole words: for each start that of the lowest term, sorted by start.
class TermSearch {
public:
    TermSearch(std::string_view text, const CStringArray& terms) : m_text(text) {
        for (const CString& term : terms) m_patterns.push_back(m_reader.ReadAll(term));
    }

    std::vector<GlossaryHit> Run() {
        const PatternSet set(m_patterns);
        m_reader.IsByBytes() ? WalkBytes(set) : WalkCharacters(set);
        KeepLowestTerms(m_hits);
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
        if (startsWord && EndsWord(m_text, end, m_reader.Page())) Add({begin, end, term});
    }
    void Consider(std::size_t term, std::size_t begin, std::size_t end) { Consider(term, begin, end, begin - 1); }

    // Terms that are parts of each other may occur far more often than the text has bytes.
    void Add(const GlossaryHit& hit) {
        if (m_hits.size() == m_most) {
            KeepLowestTerms(m_hits);
            m_most = 2 * m_hits.size() + kFew;
        }
        m_hits.push_back(hit);
    }

    static constexpr std::size_t kFew = 1024;

    std::string_view m_text;
    CaseReader m_reader{CaseRule::Ignore};
    std::vector<PatternSet::Units> m_patterns;
    std::vector<GlossaryHit> m_hits;
    std::size_t m_most = kFew;  // before they are reduced
};

}  // namespace

bool IsWholeWord(std::string_view text, std::size_t begin, std::size_t end) {
    const CodePage page = platform::CurrentCodePage();
    if (begin > 0 && IsLetterOrDigit(LastCharacter(text.substr(0, begin), page))) return false;
    return EndsWord(text, end, page);
}

std::vector<GlossaryHit> FindTerms(std::string_view text, const CStringArray& terms) {
    std::vector<GlossaryHit> hits = TermSearch(text, terms).Run();
    // Only an accepted hit of the same or a lower term that starts earlier drops another one. The accepted ones that
    // may reach the next start have descending terms.
    std::vector<GlossaryHit> open;
    std::erase_if(hits, [&open](const GlossaryHit& hit) {
        while (!open.empty() && open.back().end < hit.begin) open.pop_back();
        if (!open.empty() && open.back().term <= hit.term) return true;
        open.push_back(hit);
        return false;
    });
    return hits;
}

}  // namespace qv::html
