#include "framework/PatternAutomaton.h"

namespace qv {

PatternAutomaton::PatternAutomaton(std::vector<char32_t> pattern)
    : m_pattern(std::move(pattern)), m_border(m_pattern.size() + 1) {
    std::size_t state = 0;
    for (std::size_t i = 1; i < m_pattern.size(); ++i) {
        state = Next(state, m_pattern[i]);
        m_border[i + 1] = static_cast<std::uint32_t>(state);
    }
}

}  // namespace qv
