#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "charts/Svg.h"

namespace qv::charts {

/// Lines as runs of points without gaps.
using Runs = std::vector<std::vector<Point>>;

/// Thins a line whose points are in pixels and sorted by x, with a gap where y is NaN. Of the points in a column of
/// pixels, keeps the first, the lowest, the highest and the last, in order; gaps within a column are dropped. O(n), at
/// most four points per column.
Runs ThinLine(std::size_t count, const std::function<Point(std::size_t)>& at);

/// Thins points in pixels to those that can be distinguished: one of each square of 2 pixels, and the lowest and
/// highest of each column. Fewer than 5000 points are all kept. Drops NaNs and points outside `width` by `height`.
/// O(n).
std::vector<Point> ThinPoints(std::span<const Point> points, double width, double height);

}  // namespace qv::charts
