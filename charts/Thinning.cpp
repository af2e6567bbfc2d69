#include "charts/Thinning.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace qv::charts {
namespace {

constexpr std::size_t kFewPoints = 5000;
constexpr double kSquare = 2;

// Collects the points of one column of pixels.
class Column {
public:
    bool IsEmpty() const { return m_count == 0; }
    double Number() const { return m_number; }

    void Add(const Point& point, double number) {
        const std::size_t order = m_count++;
        if (order == 0) {
            m_number = number;
            m_kept.fill({point, 0});
        }
        if (point.y < m_kept[1].point.y) m_kept[1] = {point, order};
        if (point.y > m_kept[2].point.y) m_kept[2] = {point, order};
        m_kept[3] = {point, order};
    }

    void MoveTo(std::vector<Point>& run) {
        if (m_kept[1].order > m_kept[2].order) std::swap(m_kept[1], m_kept[2]);
        for (std::size_t i = 0; i < m_kept.size() && !IsEmpty(); ++i)
            if (i == 0 || m_kept[i].order != m_kept[i - 1].order) run.push_back(m_kept[i].point);
        m_count = 0;
    }

private:
    struct Kept {
        Point point;
        std::size_t order;
    };

    std::array<Kept, 4> m_kept = {};  // first, lowest, highest, last
    std::size_t m_count = 0;
    double m_number = 0;
};

struct Extremes {
    Point low{0, std::numeric_limits<double>::infinity()}, high{0, -std::numeric_limits<double>::infinity()};
};

}  // namespace

Runs ThinLine(std::size_t count, const std::function<Point(std::size_t)>& at) {
    Runs runs(1);
    Column column;
    bool gap = false;
    for (std::size_t i = 0; i < count; ++i) {
        const Point point = at(i);
        if (std::isnan(point.x) || std::isnan(point.y)) {
            gap = true;
            continue;
        }
        const double number = std::floor(point.x);
        if (!column.IsEmpty() && column.Number() != number) {
            column.MoveTo(runs.back());
            if (gap) runs.emplace_back();
        }
        gap = false;
        column.Add(point, number);
    }
    column.MoveTo(runs.back());
    if (runs.back().empty()) runs.pop_back();
    return runs;
}

std::vector<Point> ThinPoints(std::span<const Point> points, double width, double height) {
    const auto isInside = [&](const Point& p) { return p.x >= 0 && p.x <= width && p.y >= 0 && p.y <= height; };
    std::vector<Point> kept;
    if (points.size() < kFewPoints) {
        std::ranges::copy_if(points, std::back_inserter(kept), isInside);
        return kept;
    }
    const auto across = static_cast<std::size_t>(width / kSquare) + 1;
    std::vector<bool> taken(across * (static_cast<std::size_t>(height / kSquare) + 1));
    std::vector<Extremes> columns(static_cast<std::size_t>(width) + 1);
    for (const Point& point : points) {
        if (!isInside(point)) continue;
        Extremes& column = columns[static_cast<std::size_t>(point.x)];
        if (point.y < column.low.y) column.low = point;
        if (point.y > column.high.y) column.high = point;
        const auto square =
            static_cast<std::size_t>(point.y / kSquare) * across + static_cast<std::size_t>(point.x / kSquare);
        if (!taken[square]) kept.push_back(point);
        taken[square] = true;
    }
    for (const Extremes& column : columns)
        for (const Point& point : {column.low, column.high})
            if (std::isfinite(point.y)) kept.push_back(point);
    return kept;
}

}  // namespace qv::charts
