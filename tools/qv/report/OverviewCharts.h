#pragma once

#include "tools/qv/report/Overview.h"

namespace qv::tool {

/// Returns the overview's charts as SVG elements: sizes by kind, sizes by folder, changes over time. Charts with fewer
/// than two bars, or three points, are omitted.
std::vector<CString> DrawCharts(const Overview& overview, const std::vector<FolderEntry>& folders);

}  // namespace qv::tool
