#pragma once

/// @file Finding many patterns in one pass over a stream of units (Aho and Corasick).

#include <array>
#include <cstdint>
#include <vector>

namespace qv {

/// Construction is O(n) in time and memory in the size of the patterns (plus sorting them), searching is O(n) in the
/// input and the matches.
class PatternSet {
public:
    using Units = std::vector<char32_t>;
    using State = std::uint32_t;

    /// An empty pattern never matches, and of equal ones only the first does.
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

    /// Calls `visit(index of the pattern)` for each pattern that ends with the last unit, the longest first.
    template <class Visit>
    void ForEachFound(State state, Visit visit) const {
        if (state != kStart && m_nodes[state].pattern == kNone) state = m_nodes[state].shorter;
        for (; state != kStart; state = m_nodes[state].shorter) visit(std::size_t{m_nodes[state].pattern});
    }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    /// A common prefix of patterns. The children of a node are adjacent, sorted by their unit.
    struct Node {
        char32_t unit = 0;              // of the edge to this node
        std::uint32_t firstChild = 0;   // their range ends at the first child of the next node
        State fallback = kStart;        // of the longest proper suffix that is also a node
        State shorter = kStart;         // of the longest suffix that is a pattern
        std::uint32_t pattern = kNone;  // ending here
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

    std::vector<Node> m_nodes;  // in level order, and a sentinel that ends the last one's children
    std::array<State, 256> m_starts;
};

}  // namespace qv
