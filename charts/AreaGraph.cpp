#include <algorithm>
#include <numeric>

#include "charts/Keys.h"
#include "charts/Numbers.h"
#include "charts/Plot.h"
#include "charts/Thinning.h"
#include "qvcommon/Graph.h"

using namespace qv::charts;

namespace {

void SortByX(Series& series) {
    std::vector<std::size_t> order(series.x.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::erase_if(order, [&](std::size_t i) { return IsMissing(series.x[i]); });
    const bool isSorted = std::ranges::is_sorted(order, {}, [&](std::size_t i) { return series.x[i]; });
    if (isSorted && order.size() == series.x.size()) return;
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return series.x[i]; });
    Series sorted{series.name, {}, {}};
    for (const std::size_t i : order) {
        sorted.x.push_back(series.x[i]);
        sorted.y.push_back(series.y[i]);
    }
    series = std::move(sorted);
}

/// Replaces each series by the sum of it and the earlier ones.
void StackUp(std::vector<Series>& all) {
    for (std::size_t s = 0; s < all.size(); ++s) {
        if (all[s].x != all[0].x) AfxThrowInvalidArgException();
        for (std::size_t i = 0; i < all[s].y.size(); ++i) {
            if (IsMissing(all[s].y[i])) all[s].y[i] = 0;
            if (s > 0) all[s].y[i] = Bounded(all[s].y[i] + all[s - 1].y[i]);
        }
    }
}

void AppendVertex(std::string& path, const Point& point) {
    path += path.empty() || path.back() == 'z' ? 'M' : 'L';
    AppendPoint(path, point.x, point.y);
}

std::string LinePath(const Runs& runs) {
    std::string path;
    for (const auto& run : runs) {
        std::string line;
        for (const Point& point : run) AppendVertex(line, point);
        // A point without neighbours is drawn as a dot.
        path += run.size() == 1 ? line + "h0" : line;
    }
    return path;
}

// Extends down to a horizontal line, or to the points of another line.
std::string AreaPath(const Runs& runs, double base) {
    std::string path;
    for (const auto& run : runs) {
        AppendVertex(path, {run.front().x, base});
        for (const Point& point : run) AppendVertex(path, point);
        AppendVertex(path, {run.back().x, base});
        path += 'z';
    }
    return path;
}

std::string BandPath(const Runs& top, const Runs& bottom) {
    std::string path;
    for (const auto& run : top)
        for (const Point& point : run) AppendVertex(path, point);
    for (auto run = bottom.rbegin(); run != bottom.rend(); ++run)
        for (auto point = run->rbegin(); point != run->rend(); ++point) AppendVertex(path, *point);
    return path.empty() ? path : path + 'z';
}

Runs Thinned(const Plot& plot, const Series& series) {
    return ThinLine(series.x.size(), [&](std::size_t i) -> Point {
        if (IsMissing(series.y[i])) return {0, kMissing};
        return {plot.X(series.x[i]), plot.Y(series.y[i])};
    });
}

void DrawOverlaid(Svg& svg, const Plot& plot, const std::vector<Series>& all, const Keys& keys) {
    for (std::size_t s = 0; s < all.size(); ++s) {
        const Runs runs = Thinned(plot, all[s]);
        svg.Path(AreaPath(runs, plot.Base()), "area " + keys.FillClass(s));
        const bool isDense = static_cast<double>(all[s].y.size()) > plot.Area().Width();
        svg.Path(LinePath(runs), keys.LineClasses(s) + (isDense ? " fine" : ""));
    }
}

void DrawStacked(Svg& svg, const Plot& plot, const std::vector<Series>& all, const Keys& keys) {
    Runs below;
    for (std::size_t s = 0; s < all.size(); ++s) {
        const Runs runs = Thinned(plot, all[s]);
        DrawFilled(svg, keys, s, s == 0 ? AreaPath(runs, plot.Base()) : BandPath(runs, below));
        svg.Path(LinePath(runs), "slice");
        below = runs;
    }
}

}  // namespace

Swatch CAreaGraph::KeySwatch() const {
    return m_stacked ? Swatch::Filled : Swatch::Line;
}

void CAreaGraph::Check() const {
    if (m_stacked && m_logarithmic) AfxThrowInvalidArgException();
}

// When stacked, a missing x value is a contradiction, which drawing detects, and a missing y value counts as 0.
bool CAreaGraph::HasData() const {
    if (!m_stacked) return CPointGraph::HasData();
    return std::ranges::any_of(AllSeries(), [](const Series& series) {
        return std::ranges::any_of(series.y, [](double y) { return !IsMissing(y); });
    });
}

void CAreaGraph::Draw(Svg& svg, const Box& box, const Keys& keys) const {
    std::vector<Series> all = Points(false);
    for (Series& series : all) SortByX(series);
    if (m_stacked) StackUp(all);
    HorizontalAxis x;
    x.dates = m_dates;
    x.title = m_xTitle;
    VerticalAxis y{{}, m_logarithmic, m_yTitle};
    if (!m_logarithmic) y.range.Include(0);
    for (const Series& series : all) {
        x.range.IncludeAll(series.x, false);
        y.range.IncludeAll(series.y, m_logarithmic);
    }
    const bool isNamed = std::ranges::all_of(AllSeries(), [](const Series& series) { return series.x.empty(); });
    if (isNamed && !Categories().IsEmpty() && static_cast<double>(CountPositions()) <= box.Width())
        for (std::size_t i = 0; i < CountPositions(); ++i) x.names.push_back(CategoryAt(i));
    Plot plot(svg, box, std::move(x), std::move(y));
    plot.DrawAxes();
    if (m_stacked)
        DrawStacked(svg, plot, all, keys);
    else
        DrawOverlaid(svg, plot, all, keys);
    plot.DrawBaseLine();
}

std::string CAreaGraph::Settings() const {
    return CPointGraph::Settings() + (m_stacked ? "stacked areas" : "areas");
}
