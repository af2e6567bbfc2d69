#pragma once

#include "tools/qv/report/Overview.h"

namespace qv::tool {

/// The overview's charts as SVG elements: sizes by kind, sizes by folder, changes over time. Charts that would have one
/// bar, or two points, are left out.
std::vector<CString> DrawCharts(const Overview& overview, const std::vector<FolderEntry>& folders);

}  // namespace qv::tool
