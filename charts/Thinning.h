#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "charts/Svg.h"

namespace qv::charts {

/// Lines as runs of points without a gap.
using Runs = std::vector<std::vector<Point>>;

/// A line in pixels, its points in the order of x, a gap where y is NaN. Of the points in a column of pixels the first, the
/// lowest, the highest and the last stay, in their order; a gap within a column goes. O(n), at most four points a column.
Runs ThinLine(std::size_t count, const std::function<Point(std::size_t)>& at);

/// Of points in pixels those that can be told apart: one of each square of 2 pixels, and the lowest and highest of each
/// column. All of them when they are fewer than 5000. Those outside `width` by `height` and those that are NaN go. O(n).
std::vector<Point> ThinPoints(std::span<const Point> points, double width, double height);

}  // namespace qv::charts
