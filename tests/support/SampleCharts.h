#pragma once

#include <string>
#include <vector>

#include "qvcommon/Graph.h"

/// A chart that a test looks at: `name` is that of its file.
struct SampleChart {
    std::string name;
    CString svg;
};

/// Charts of every kind with what is awkward about each: long and hostile names, negative and missing values, many points.
std::vector<SampleChart> SampleCharts(int width, int height);
