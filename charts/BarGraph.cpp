#include <algorithm>
#include <numeric>

#include "charts/Characters.h"
#include "charts/Folding.h"
#include "charts/Keys.h"
#include "charts/Numbers.h"
#include "charts/Plot.h"
#include "qvcommon/Graph.h"

using namespace qv::charts;

namespace {

constexpr double kNarrowest = 3;  // minimum width of a category in pixels
constexpr double kHintWidth = 2;  // minimum width of a bar with a tooltip
constexpr double kShare = 0.72;   // share of a category's width that bars take
constexpr double kWidest = 96;    // maximum width of a group's bar

// The values to draw, by series and category.
struct Bars {
    std::vector<CString> names;
    std::vector<Series> series;
};

Bars FoldedBars(const std::vector<Series>& all, std::size_t count, std::size_t most, const auto& nameOf) {
    const Folding folding = Fold(count, most, [&](std::size_t i) {
        double sum = 0;
        for (const Series& series : all)
            if (i < series.y.size() && !IsMissing(series.y[i])) sum = Bounded(sum + std::abs(series.y[i]));
        return sum;
    });
    Bars bars;
    for (const std::size_t i : folding.kept) bars.names.push_back(nameOf(i));
    if (folding.folded) bars.names.emplace_back("Others (" + std::to_string(folding.folded) + ')');
    for (const Series& series : all) {
        Series& kept = bars.series.emplace_back(Series{series.name, {}, {}});
        for (const std::size_t i : folding.kept) kept.y.push_back(i < series.y.size() ? series.y[i] : kMissing);
        if (!folding.folded) continue;
        double others = 0;
        for (std::size_t i = 0; i < series.y.size(); ++i)
            if (!folding.isKept[i] && !IsMissing(series.y[i])) others = Bounded(others + series.y[i]);
        kept.y.push_back(others);
    }
    return bars;
}

// The upper and lower ends of a category's stacked bars.
struct Stack {
    double up = 0, down = 0;

    /// Adds a value and returns its two ends.
    Range Push(double value) {
        double& end = value < 0 ? down : up;
        const double begin = end;
        end = Bounded(end + value);
        return {std::min(begin, end), std::max(begin, end)};
    }
};

Range ValueRange(const Bars& bars, bool stacked, bool logarithmic) {
    Range range;
    if (!logarithmic) range.Include(0);
    for (const Series& series : bars.series) range.IncludeAll(series.y, logarithmic);
    for (std::size_t i = 0; stacked && i < bars.names.size(); ++i) {
        Stack stack;
        for (const Series& series : bars.series)
            if (!IsMissing(series.y[i])) stack.Push(series.y[i]);
        range.Include(stack.up);
        range.Include(stack.down);
    }
    // Gives a single bar some height on a logarithmic axis, too.
    if (logarithmic && !range.IsEmpty() && range.low > 1e-290) range.low *= 0.999;
    return range;
}

class BarDrawing {
public:
    BarDrawing(Svg& svg, const Plot& plot, const Bars& bars, const Keys& keys)
        : m_svg(svg), m_plot(plot), m_bars(bars), m_keys(keys) {}

    void DrawBeside(bool logarithmic) {
        const auto count = static_cast<double>(m_bars.series.size());
        const double width = std::min(m_plot.PartWidth() * kShare / count, kWidest);
        for (std::size_t s = 0; s < m_bars.series.size(); ++s) {
            for (std::size_t i = 0; i < m_bars.names.size(); ++i) {
                const double value = m_bars.series[s].y[i];
                if (IsMissing(value) || (logarithmic && value <= 0)) continue;
                const double left = m_plot.PartMiddle(i) + (static_cast<double>(s) - count / 2) * width;
                Bar(s, i, left, width - (width > 6 && count > 1 ? 1 : 0), m_plot.Base(), m_plot.Y(value));
            }
            Flush(s);
        }
    }

    void DrawStacked() {
        const double width = std::min(m_plot.PartWidth() * kShare, kWidest);
        std::vector<Stack> stacks(m_bars.names.size());
        for (std::size_t s = 0; s < m_bars.series.size(); ++s) {
            for (std::size_t i = 0; i < m_bars.names.size(); ++i) {
                const double value = m_bars.series[s].y[i];
                if (IsMissing(value)) continue;
                const Range ends = stacks[i].Push(value);
                Bar(s, i, m_plot.PartMiddle(i) - width / 2, width, m_plot.Y(ends.low), m_plot.Y(ends.high));
            }
            Flush(s);
        }
    }

private:
    // Wide bars have a tooltip each; a series' narrow bars are merged into one path.
    void Bar(std::size_t s, std::size_t i, double left, double width, double y1, double y2) {
        const std::size_t begin = m_path.size();
        m_path += 'M';
        AppendPoint(m_path, left, y1);
        m_path += 'V';
        AppendCoordinate(m_path, y2);
        m_path += 'h';
        AppendCoordinate(m_path, width);
        m_path += 'V';
        AppendCoordinate(m_path, y1);
        m_path += 'z';
        if (width < kHintWidth) return;
        const Series& series = m_bars.series[s];
        const CString separator = series.name.IsEmpty() ? "" : ", ";
        const CString hint = m_bars.names[i] + separator + series.name + ": " + ValueText(series.y[i]);
        m_svg.Path(std::string_view(m_path).substr(begin), m_keys.FillClass(s), Characters(hint));
        m_hasHints = true;
    }

    void Flush(std::size_t s) {
        if (!m_hasHints) m_svg.Path(m_path, m_keys.FillClass(s));
        if (m_keys.HavePatterns() && m_keys.Pattern(s)) m_svg.Path(m_path, m_keys.PatternClass(s));
        m_path.clear();
    }

    Svg& m_svg;
    const Plot& m_plot;
    const Bars& m_bars;
    const Keys& m_keys;
    std::string m_path;
    bool m_hasHints = false;
};

}  // namespace

void CBarGraph::Check() const {
    if (m_stacked && m_logarithmic) AfxThrowInvalidArgException();
}

void CBarGraph::Draw(Svg& svg, const Box& box, const Keys& keys) const {
    const auto most = std::max<std::size_t>(2, static_cast<std::size_t>(box.Width() / kNarrowest));
    const Bars bars = FoldedBars(AllSeries(), CountPositions(), most, [this](std::size_t i) { return CategoryAt(i); });
    HorizontalAxis x;
    x.names = bars.names;
    x.title = m_xTitle;
    Plot plot(svg, box, std::move(x), {ValueRange(bars, m_stacked, m_logarithmic), m_logarithmic, m_yTitle});
    plot.DrawAxes();
    BarDrawing drawing(svg, plot, bars, keys);
    if (m_stacked)
        drawing.DrawStacked();
    else
        drawing.DrawBeside(m_logarithmic);
    plot.DrawBaseLine();
}

Table CBarGraph::Values() const {
    return TableOf("Category", AllSeries(), CountPositions(), [this](std::size_t i) { return CategoryAt(i); });
}

std::string CBarGraph::Settings() const {
    return CAxisGraph::Settings() + (m_stacked ? "stacked bars" : "bars");
}
