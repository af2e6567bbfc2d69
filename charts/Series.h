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
    std::vector<double> x;  ///< empty, or the same size as y
    std::vector<double> y;
};

/// The table for screen readers: a header row, and rows that begin with a heading.
struct Table {
    std::vector<CString> heads;
    std::vector<std::vector<CString>> rows;
};

/// A table with more rows is replaced by a summary.
inline constexpr std::size_t kMostRows = 100;

/// Returns a row for each series: the number of values, the least and the greatest.
Table Summary(const std::vector<Series>& all);

/// Formats a value for screen readers and tooltips: the shortest digits that read back as the same number, empty if
/// missing.
CString ValueText(double value);

/// Returns the values at each position, or a summary of each series if there are too many. `nameOf(i)` names a
/// position.
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
