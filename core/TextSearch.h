#pragma once

/// @file The one search behind everything that finds texts with or without regard to case.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/CaseRule.h"
#include "framework/ExactSearch.h"
#include "framework/PatternAutomaton.h"

namespace qv {

/// Where a text was found. Without regard to case an occurrence may be longer or shorter than the text sought.
struct Occurrence {
    std::size_t position = std::string_view::npos;
    std::size_t length = 0;

    explicit operator bool() const { return position != std::string_view::npos; }
    std::size_t End() const { return position + length; }
};

/// Walks through the occurrences of one text in another. All calls together take time linear in both texts, however
/// they look. Refers to both texts; they have to stay as they are.
class TextSearch {
public:
    TextSearch(std::string_view text, std::string_view find, CaseRule rule);

    /// The first occurrence at or after `from`, which must not be lower than in the call before. An empty `find` stands
    /// everywhere, the end of the text included.
    Occurrence Find(std::size_t from);

private:
    static constexpr std::size_t kNowhere = std::string_view::npos;

    /// A byte of the text sought that an occurrence is recognised by, and the one or two bytes that stand for it.
    struct Anchor {
        std::size_t offset = 0;
        unsigned char one = 0, other = 0;
    };

    bool PrepareAnchors();
    bool SetAnchor(Anchor& anchor, std::size_t offset) const;
    bool MayHoldLongLetters() const;

    Occurrence FindByBytes(std::size_t from);
    std::size_t ScanFor(std::size_t from, std::size_t limit);
    std::size_t NextCandidate(std::size_t from, std::size_t limit) const;
    bool IsAt(std::size_t position);

    Occurrence FindByAutomaton(std::size_t from);

    std::string_view m_text, m_find;
    CaseReader m_reader;
    std::optional<ExactSearch> m_exact;  // instead of all that follows, where case counts

    // While m_byBytes holds, an occurrence is looked for by its anchors; m_upper is what its bytes are in upper case.
    bool m_byBytes = false;
    bool m_longLetters = false;
    std::string m_upper;
    Anchor m_first, m_second;
    std::size_t m_origin = kNowhere, m_compared = 0;  // when more is compared than passed, the automaton takes over

    std::optional<PatternAutomaton> m_automaton;
    std::size_t m_read = 0, m_state = 0, m_count = 0;
    std::vector<std::size_t> m_starts;  // of the last characters read, a ring
    Occurrence m_last;
};

}  // namespace qv
