#pragma once

#include <string>
#include <string_view>

#include "qvcommon/Graph.h"
#include "tools/qv/Command.h"

namespace qv::tool {

/// How a chart is made from comma-separated values.
struct ChartOptions {
    std::string kind = "bar";  ///< bar, stacked, pie, area, stacked-area, scatter
    std::string title, xTitle, yTitle;
    int width = 720, height = 400;
    bool logarithmic = false, logarithmicX = false, dates = false;
};

/// Returns the chart of a text. The first record has the names of the series; each further one has a label or x value,
/// followed by the values of the series. An empty field, "NA" and "NaN" are missing values; empty lines and a byte
/// order mark are skipped. Time and memory are O(n).
/// @throws CommandError with the line and column that cannot be read; "column" counts fields from 1.
CString ChartOf(std::string_view csv, const ChartOptions& options);

}  // namespace qv::tool
