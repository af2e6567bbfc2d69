#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace qv::charts {

/// Positions that stay, in their order, and those that become one.
struct Folding {
    std::vector<std::size_t> kept;
    std::size_t folded = 0;
    std::vector<bool> isKept;  ///< by position; empty when none is folded
};

/// Keeps `most` - 1 of `count` positions, those of the greatest weight and of equal ones the first, when there are more than
/// `most`. O(count).
Folding Fold(std::size_t count, std::size_t most, const std::function<double(std::size_t)>& weight);

}  // namespace qv::charts
