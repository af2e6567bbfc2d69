#pragma once

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "qvcommon/framework/String.h"

namespace qv::charts {

inline constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

inline bool IsMissing(double value) {
    return !std::isfinite(value);
}

struct Series {
    CString name;
    std::vector<double> x;  ///< empty, or as many as y
    std::vector<double> y;
};

/// What a screen reader gets: a row of headings, and rows that begin with one.
struct Table {
    std::vector<CString> heads;
    std::vector<std::vector<CString>> rows;
};

/// Of more rows than this a table has a summary.
inline constexpr std::size_t kMostRows = 100;

/// A row for each series: how many values it has, the least and the greatest.
Table Summary(const std::vector<Series>& all);

/// A value as screen readers and hints have it: the shortest digits that give it back, empty for a missing one.
CString ValueText(double value);

/// The values at each position, or a summary of each series when there are too many. `nameOf(i)` names a position.
template <class NameOf>
Table TableOf(const char* first, const std::vector<Series>& all, std::size_t positions, NameOf nameOf) {
    if (positions > kMostRows) return Summary(all);
    Table table{{first}, {}};
    for (const Series& series : all) table.heads.push_back(series.name);
    for (std::size_t i = 0; i < positions; ++i) {
        table.rows.push_back({nameOf(i)});
        for (const Series& series : all)
            table.rows.back().push_back(i < series.y.size() ? ValueText(series.y[i]) : CString());
    }
    return table;
}

}  // namespace qv::charts
