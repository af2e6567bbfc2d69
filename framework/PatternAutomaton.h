#pragma once

/// @file Finding a pattern in a stream of units without backtracking (Knuth, Morris and Pratt).

#include <cstdint>
#include <vector>

namespace qv {

class PatternAutomaton {
public:
    /// The pattern must not be empty.
    explicit PatternAutomaton(std::vector<char32_t> pattern);

    std::size_t Size() const { return m_pattern.size(); }

    /// A state is the length of the longest pattern prefix that is a suffix of the units read so far; Size() means that
    /// an occurrence ends here, and further calls find overlapping ones.
    std::size_t Next(std::size_t state, char32_t unit) const {
        if (state == m_pattern.size()) state = m_border[state];
        while (state > 0 && m_pattern[state] != unit) state = m_border[state];
        return m_pattern[state] == unit ? state + 1 : 0;
    }

private:
    std::vector<char32_t> m_pattern;
    // For each length: the longest shorter prefix that is a suffix of the prefix of this length.
    std::vector<std::uint32_t> m_border;
};

}  // namespace qv
