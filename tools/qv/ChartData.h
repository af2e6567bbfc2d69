#pragma once

#include <string>
#include <string_view>

#include "qvcommon/Graph.h"
#include "tools/qv/Command.h"

namespace qv::tool {

/// How a chart is made of comma-separated values.
struct ChartOptions {
    std::string kind = "bar";  ///< bar, stacked, pie, area, stacked-area, scatter
    std::string title, xTitle, yTitle;
    int width = 720, height = 400;
    bool logarithmic = false, logarithmicX = false, dates = false;
};

/// The chart of a text: its first record has the names of the series, the first field of each other record a label or the x
/// value, the fields after it the values of the series. An empty field, "NA" and "NaN" are missing values; empty lines
/// are skipped, and so is a byte order mark. Memory and time grow in line with the text.
/// @throws Failed with the line and column of what cannot be read; "column" counts fields from 1.
CString ChartOf(std::string_view csv, const ChartOptions& options);

}  // namespace qv::tool
