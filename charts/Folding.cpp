#include "charts/Folding.h"

#include <algorithm>
#include <numeric>

namespace qv::charts {

Folding Fold(std::size_t count, std::size_t most, const std::function<double(std::size_t)>& weight) {
    Folding folding;
    folding.kept.resize(count);
    std::iota(folding.kept.begin(), folding.kept.end(), std::size_t{0});
    if (count <= most) return folding;
    std::vector<double> weights(count);
    for (std::size_t i = 0; i < count; ++i) weights[i] = weight(i);
    const auto end = folding.kept.begin() + static_cast<std::ptrdiff_t>(most - 1);
    std::nth_element(folding.kept.begin(), end, folding.kept.end(), [&](std::size_t a, std::size_t b) {
        return weights[a] > weights[b] || (weights[a] == weights[b] && a < b);
    });
    folding.kept.erase(end, folding.kept.end());
    std::ranges::sort(folding.kept);
    folding.folded = count - folding.kept.size();
    folding.isKept.resize(count);
    for (const std::size_t i : folding.kept) folding.isKept[i] = true;
    return folding;
}

}  // namespace qv::charts
