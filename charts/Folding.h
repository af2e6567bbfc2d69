#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace qv::charts {

/// The positions that are kept, in order, and those that are merged into one.
struct Folding {
    std::vector<std::size_t> kept;
    std::size_t folded = 0;
    std::vector<bool> isKept;  ///< by position; empty if none is folded
};

/// If there are more than `most` of `count` positions, keeps the `most` - 1 with the greatest weight; the earlier of
/// equal ones. O(count).
Folding Fold(std::size_t count, std::size_t most, const std::function<double(std::size_t)>& weight);

}  // namespace qv::charts
