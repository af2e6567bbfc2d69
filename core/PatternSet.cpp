#include "core/PatternSet.h"

#include <algorithm>
#include <numeric>

namespace qv {

PatternSet::PatternSet(const std::vector<Units>& patterns) {
    AddNodes(patterns);
    LinkNodes();
    for (std::size_t unit = 0; unit < m_starts.size(); ++unit)
        m_starts[unit] = FindChild(kStart, static_cast<char32_t>(unit));
}

// In sorted order the patterns with a common prefix are adjacent: a node is such a range, and its depth.
void PatternSet::AddNodes(const std::vector<Units>& patterns) {
    std::vector<std::uint32_t> sorted(patterns.size());
    std::iota(sorted.begin(), sorted.end(), 0u);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return patterns[a] < patterns[b]; });
    struct Range {
        std::size_t begin, end, depth;
    };
    std::vector<Range> ranges{{0, sorted.size(), 0}};
    m_nodes.emplace_back();
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        auto [begin, end, depth] = ranges[i];
        m_nodes[i].firstChild = static_cast<std::uint32_t>(m_nodes.size());
        if (begin < end && depth > 0 && patterns[sorted[begin]].size() == depth) m_nodes[i].pattern = sorted[begin];
        while (begin < end && patterns[sorted[begin]].size() == depth) ++begin;
        while (begin < end) {
            const char32_t unit = patterns[sorted[begin]][depth];
            const std::size_t from = begin;
            while (begin < end && patterns[sorted[begin]][depth] == unit) ++begin;
            ranges.push_back({from, begin, depth + 1});
            m_nodes.emplace_back().unit = unit;
        }
    }
    m_nodes.push_back({.firstChild = static_cast<std::uint32_t>(m_nodes.size())});
}

void PatternSet::LinkNodes() {
    for (State parent = 0; parent + 1 < m_nodes.size(); ++parent)
        for (State child = m_nodes[parent].firstChild; child < m_nodes[parent + 1].firstChild; ++child) {
            State fallback = parent, found = kNone;
            while (found == kNone && fallback != kStart) {
                fallback = m_nodes[fallback].fallback;
                found = FindChild(fallback, m_nodes[child].unit);
            }
            if (found == kNone) found = kStart;
            m_nodes[child].fallback = found;
            m_nodes[child].shorter = m_nodes[found].pattern != kNone ? found : m_nodes[found].shorter;
        }
}

}  // namespace qv
