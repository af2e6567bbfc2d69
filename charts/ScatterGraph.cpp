#include <algorithm>
#include <string_view>

#include "charts/Characters.h"
#include "charts/DateTicks.h"
#include "charts/Keys.h"
#include "charts/Plot.h"
#include "charts/Thinning.h"
#include "qvcommon/Graph.h"

using namespace qv::charts;

namespace {

constexpr double kDateRoom = 0.02;               // margin beside the first and last date, relative to the range
constexpr std::size_t kFew = 300, kMany = 5000;  // points of a series
constexpr std::size_t kHinted = 200;             // points of a picture with tooltips

struct MarkSize {
    double pixels;
    std::string_view text;
};

MarkSize MarkSizeOf(std::size_t count) {
    if (count <= kFew) return {7, "7"};
    return count <= kMany ? MarkSize{4.5, "4.5"} : MarkSize{2.5, "2.5"};
}

CString HintText(const Series& series, std::size_t i, bool dates) {
    const CString name = series.name.IsEmpty() ? CString() : series.name + ": ";
    return name + (dates ? DateText(series.x[i]) : ValueText(series.x[i])) + ", " + ValueText(series.y[i]);
}

void DrawHinted(Svg& svg, const Plot& plot, const Series& series, const Keys& keys, std::size_t key, bool dates) {
    for (std::size_t i = 0; i < series.y.size(); ++i) {
        if (IsMissing(series.y[i])) continue;
        std::string path;
        AppendMark(path, keys.Pattern(key), plot.X(series.x[i]), plot.Y(series.y[i]), 7);
        svg.Path(path, keys.MarkClasses(key), Characters(HintText(series, i, dates)));
    }
}

void DrawMany(Svg& svg, const Plot& plot, const Series& series, const Keys& keys, std::size_t key) {
    const Box& area = plot.Area();
    std::vector<Point> points;
    points.reserve(series.y.size());
    for (std::size_t i = 0; i < series.y.size(); ++i)
        if (!IsMissing(series.y[i]))
            points.push_back({plot.X(series.x[i]) - area.left, plot.Y(series.y[i]) - area.top});
    std::string path;
    const double size = MarkSizeOf(series.y.size()).pixels;
    for (const Point& point : ThinPoints(points, area.Width(), area.Height()))
        AppendMark(path, keys.Pattern(key), point.x + area.left, point.y + area.top, size);
    svg.Path(path, keys.MarkClasses(key));
}

}  // namespace

Swatch CScatterGraph::KeySwatch() const {
    return Swatch::Mark;
}

bool CScatterGraph::HasLogarithmicX() const {
    return m_logarithmicX && !m_dates;
}

bool CScatterGraph::HasData() const {
    return HasPoints(HasLogarithmicX());
}

void CScatterGraph::Draw(Svg& svg, const Box& box, const Keys& keys) const {
    const std::vector<Series> all = Points(HasLogarithmicX());
    HorizontalAxis x;
    x.dates = m_dates;
    x.logarithmic = HasLogarithmicX();
    x.roundedOut = true;
    x.title = m_xTitle;
    VerticalAxis y{{}, m_logarithmic, m_yTitle};
    std::size_t count = 0;
    for (const Series& series : all) {
        x.range.IncludeAll(series.x, x.logarithmic);
        y.range.IncludeAll(series.y, m_logarithmic);
        count += series.y.size();
    }
    if (m_dates && !x.range.IsEmpty()) {
        const double room = (x.range.high - x.range.low) * kDateRoom;
        x.range = {x.range.low - room, x.range.high + room};
    }
    Plot plot(svg, box, std::move(x), std::move(y));
    plot.DrawAxes();
    plot.DrawBaseLine();
    for (std::size_t s = 0; s < all.size(); ++s) {
        svg << "<g stroke-width=\"" << MarkSizeOf(all[s].y.size()).text << "\">\n";
        if (count <= kHinted)
            DrawHinted(svg, plot, all[s], keys, s, m_dates);
        else
            DrawMany(svg, plot, all[s], keys, s);
        svg << "</g>\n";
    }
}

std::string CScatterGraph::Settings() const {
    return CPointGraph::Settings() + (m_logarithmicX ? "points, log x" : "points");
}
