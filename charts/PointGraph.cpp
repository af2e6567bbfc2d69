#include "charts/Characters.h"
#include "charts/DateTicks.h"
#include "charts/Series.h"
#include "charts/Svg.h"
#include "qvcommon/Graph.h"

using namespace qv::charts;

namespace {

double PositionOf(const Series& series, std::size_t i, bool dates) {
    if (series.x.empty()) return static_cast<double>(i) + 1;
    return dates ? EvenDays(series.x[i]) : series.x[i];
}

/// How values become points.
struct PointRules {
    bool dates, logarithmicX, logarithmicY;

    /// A missing x value makes y missing too.
    Point At(const Series& series, std::size_t i) const {
        double x = PositionOf(series, i, dates), y = series.y[i];
        if (IsMissing(x) || (logarithmicX && x <= 0)) x = kMissing;
        if (IsMissing(x) || IsMissing(y) || (logarithmicY && y <= 0)) y = kMissing;
        return {x, y};
    }
};

}  // namespace

int CPointGraph::AddSeries(std::string_view name, std::vector<double> x, std::vector<double> y) {
    if (x.size() != y.size()) AfxThrowInvalidArgException();
    return Append(name, std::move(x), std::move(y));
}

int CPointGraph::AddSeries(std::string_view name, std::span<const COleDateTime> dates, std::vector<double> y) {
    if (dates.size() != y.size()) AfxThrowInvalidArgException();
    std::vector<double> days;
    days.reserve(dates.size());
    for (const COleDateTime& date : dates)
        days.push_back(date.GetStatus() == COleDateTime::valid ? date.m_dt : kMissing);
    const int index = Append(name, std::move(days), std::move(y));
    m_dates = true;
    return index;
}

std::vector<Series> CPointGraph::Points(bool logarithmicX) const {
    const PointRules rules{m_dates, logarithmicX, m_logarithmic};
    std::vector<Series> points;
    for (const Series& series : AllSeries()) {
        Series& drawn = points.emplace_back(Series{series.name, {}, {}});
        drawn.x.reserve(series.y.size());
        drawn.y.reserve(series.y.size());
        for (std::size_t i = 0; i < series.y.size(); ++i) {
            const Point point = rules.At(series, i);
            drawn.x.push_back(point.x);
            drawn.y.push_back(point.y);
        }
    }
    return points;
}

bool CPointGraph::HasPoints(bool logarithmicX) const {
    const PointRules rules{m_dates, logarithmicX, m_logarithmic};
    for (const Series& series : AllSeries())
        for (std::size_t i = 0; i < series.y.size(); ++i)
            if (!IsMissing(rules.At(series, i).y)) return true;
    return false;
}

bool CPointGraph::HasData() const {
    return HasPoints(false);
}

Table CPointGraph::Values() const {
    const std::vector<Series>& all = AllSeries();
    if (CountPositions() > kMostRows) return Summary(all);
    Table table{{"Series", m_xTitle.IsEmpty() ? CString("x") : m_xTitle, m_yTitle.IsEmpty() ? CString("y") : m_yTitle},
                {}};
    std::size_t rows = 0;
    for (const Series& series : all) rows += series.y.size();
    if (rows > kMostRows) return Summary(all);
    for (const Series& series : all)
        for (std::size_t i = 0; i < series.y.size(); ++i) {
            const double x = PositionOf(series, i, m_dates);
            const bool isNamed = series.x.empty() && !Categories().IsEmpty();
            table.rows.push_back({series.name,
                                  isNamed   ? CategoryAt(i)
                                  : m_dates ? DateText(x)
                                            : ValueText(x),
                                  ValueText(series.y[i])});
        }
    return table;
}

std::string CPointGraph::Settings() const {
    return CAxisGraph::Settings() + (m_dates ? 'd' : ' ');
}
