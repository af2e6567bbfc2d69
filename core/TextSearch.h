#pragma once

/// @file The common implementation of case-sensitive and case-insensitive searches.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/CaseRule.h"
#include "framework/ExactSearch.h"
#include "framework/PatternAutomaton.h"

namespace qv {

/// A match. If case is ignored, it may be longer or shorter than the search text.
struct Occurrence {
    std::size_t position = std::string_view::npos;
    std::size_t length = 0;

    explicit operator bool() const { return position != std::string_view::npos; }
    std::size_t End() const { return position + length; }
};

/// Iterates over the occurrences of one text in another. All calls together are O(n) in both texts, for any input.
/// Keeps references to both texts, which must not change.
class TextSearch {
public:
    TextSearch(std::string_view text, std::string_view find, CaseRule rule);

    /// Returns the first occurrence at or after `from`, which must not decrease between calls. An empty `find` matches
    /// everywhere, including the end of the text.
    Occurrence Find(std::size_t from);

private:
    static constexpr std::size_t kNowhere = std::string_view::npos;

    /// A byte of the search text used to detect an occurrence, and its one or two variants.
    struct Anchor {
        std::size_t offset = 0;
        unsigned char one = 0, other = 0;
    };

    bool PrepareAnchors();
    bool SetAnchor(Anchor& anchor, std::size_t offset) const;
    bool MayHoldLongLetters() const;

    Occurrence FindByBytes(std::size_t from);
    bool HasLongLetterBetween(std::size_t from, std::size_t end);
    std::size_t ScanFor(std::size_t from, std::size_t limit);
    std::size_t NextCandidate(std::size_t from, std::size_t limit) const;
    bool IsAt(std::size_t position);

    Occurrence FindByAutomaton(std::size_t from);

    std::string_view m_text, m_find;
    CaseReader m_reader;
    std::optional<ExactSearch> m_exact;  // replaces everything below for case-sensitive searches

    // While m_byBytes is set, occurrences are detected by their anchors; m_upper maps bytes to upper case.
    bool m_byBytes = false;
    bool m_longLetters = false;
    std::size_t m_plainEnd = 0;  // no long letter ends between the first `from` and here
    std::string m_upper;
    Anchor m_first, m_second;
    std::size_t m_origin = kNowhere, m_compared = 0;  // if more is compared than skipped, the automaton takes over

    std::optional<PatternAutomaton> m_automaton;
    std::size_t m_read = 0, m_state = 0, m_count = 0;
    std::vector<std::size_t> m_starts;  // of the last characters read, a ring buffer
    Occurrence m_last;
};

}  // namespace qv
