#pragma once

/// @file Finding many patterns in one pass over a stream of units (Aho and Corasick).

#include <array>
#include <cstdint>
#include <vector>

namespace qv {

/// Memory and the time to build it grow in line with the patterns (but for sorting them), the time to search in line with
/// what is read and found.
class PatternSet {
public:
    using Units = std::vector<char32_t>;
    using State = std::uint32_t;

    /// An empty pattern is found nowhere, and of equal ones only the first.
    explicit PatternSet(const std::vector<Units>& patterns);

    static constexpr State kStart = 0;

    State Next(State state, char32_t unit) const {
        for (;;) {
            const State child = Child(state, unit);
            if (child != kNone) return child;
            if (state == kStart) return kStart;
            state = m_nodes[state].fallback;
        }
    }

    /// Calls `visit(index of the pattern)` for each pattern that ends with the unit read last, the longest first.
    template <class Visit>
    void ForEachFound(State state, Visit visit) const {
        if (state != kStart && m_nodes[state].pattern == kNone) state = m_nodes[state].shorter;
        for (; state != kStart; state = m_nodes[state].shorter) visit(std::size_t{m_nodes[state].pattern});
    }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    /// What the patterns share from their start on. The children of a node lie side by side, sorted by their unit.
    struct Node {
        char32_t unit = 0;              // that leads here
        std::uint32_t firstChild = 0;   // up to the first child of the next node
        State fallback = kStart;        // of the longest proper suffix that is a node too
        State shorter = kStart;         // of the longest one that is a pattern
        std::uint32_t pattern = kNone;  // that ends here
    };

    State Child(State state, char32_t unit) const {
        if (state == kStart && unit < m_starts.size()) return m_starts[unit];
        return FindChild(state, unit);
    }
    State FindChild(State state, char32_t unit) const {
        State low = m_nodes[state].firstChild, high = m_nodes[state + 1].firstChild;
        while (high - low > 4) {
            const State middle = low + (high - low) / 2;
            (m_nodes[middle].unit <= unit ? low : high) = middle;
        }
        for (; low < high; ++low)
            if (m_nodes[low].unit == unit) return low;
        return kNone;
    }

    void AddNodes(const std::vector<Units>& patterns);
    void LinkNodes();

    std::vector<Node> m_nodes;  // level by level, and one more that ends the last one's children
    std::array<State, 256> m_starts;
};

}  // namespace qv
