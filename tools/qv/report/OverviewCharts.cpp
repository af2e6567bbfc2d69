#include "tools/qv/report/OverviewCharts.h"

#include <algorithm>
#include <iterator>

#include "qvcommon/Graph.h"
#include "qvcommon/framework/Utf8.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

constexpr int kWidth = 520, kHeight = 300;
constexpr std::size_t kMostBars = 8;

struct Bar {
    std::string name;  // UTF-8
    std::uintmax_t bytes;
};

struct Unit {
    const char* name;
    double bytes;
};

Unit UnitFor(std::uintmax_t greatest) {
    Unit unit{"bytes", 1};
    for (const char* const name : {"KB", "MB", "GB", "TB"}) {
        if (static_cast<double>(greatest) < 1024 * unit.bytes) break;
        unit = {name, 1024 * unit.bytes};
    }
    return unit;
}

/// Keeps the longest bars and merges the others into the last one.
std::vector<Bar> LongestFirst(std::vector<Bar> bars) {
    std::ranges::stable_sort(bars, std::greater(), &Bar::bytes);
    if (bars.size() <= kMostBars) return bars;
    Bar others{"Others (" + std::to_string(bars.size() - kMostBars + 1) + ")", 0};
    for (auto bar = bars.begin() + kMostBars - 1; bar != bars.end(); ++bar) others.bytes += bar->bytes;
    bars.resize(kMostBars - 1);
    bars.push_back(std::move(others));
    return bars;
}

void DrawSizes(std::vector<CString>& charts, const char* title, const char* id, std::vector<Bar> bars) {
    if (bars.size() < 2) return;
    bars = LongestFirst(std::move(bars));
    const Unit unit = UnitFor(bars.front().bytes);
    CStringArray names;
    std::vector<double> sizes;
    for (const Bar& bar : bars) {
        names.Add(QvFromUtf8(VisibleOnPage(bar.name)));
        sizes.push_back(static_cast<double>(bar.bytes) / unit.bytes);
    }
    CBarGraph graph;
    graph.SetTitle(title);
    graph.SetId(id);
    graph.SetSize(kWidth, kHeight);
    graph.SetAxisTitles("", unit.name);
    graph.SetCategories(names);
    graph.AddSeries("Size", std::move(sizes));
    charts.push_back(graph.GetSvg());
}

std::vector<Bar> KindBars(const Overview& overview) {
    std::vector<Bar> bars;
    for (const KindTotals& kind : overview.kinds) bars.push_back({kind.kind->name, kind.totals.bytes});
    return bars;
}

/// Returns bars for the outermost folder's own files and for each of its subfolders, including descendants.
std::vector<Bar> FolderBars(const std::vector<FolderEntry>& folders) {
    std::vector<Bar> bars;
    if (folders.front().own.files) bars.push_back({"(directly)", folders.front().own.bytes});
    for (const FolderEntry& folder : folders)
        if (folder.depth == 1) bars.push_back({folder.path, folder.overall.bytes});
    return bars;
}

void DrawChanges(std::vector<CString>& charts, const Overview& overview) {
    constexpr std::size_t kFewest = 3;
    if (overview.changes.size() < kFewest) return;
    std::vector<COleDateTime> dates;
    std::vector<double> files;
    for (const PeriodCount& period : overview.changes) {
        dates.emplace_back(period.year, period.month, period.day, 0, 0, 0);
        files.push_back(static_cast<double>(period.files));
    }
    CAreaGraph graph;
    graph.SetTitle("Files by the " + CString(overview.period) + " of their last change");
    graph.SetId("changes");
    graph.SetSize(kWidth, kHeight);
    graph.SetAxisTitles("", "files");
    graph.AddSeries("Files", dates, std::move(files));
    charts.push_back(graph.GetSvg());
}

}  // namespace

std::vector<CString> DrawCharts(const Overview& overview, const std::vector<FolderEntry>& folders) {
    std::vector<CString> charts;
    DrawSizes(charts, "Size by kind", "size-by-kind", KindBars(overview));
    DrawSizes(charts, "Size by folder", "size-by-folder", FolderBars(folders));
    DrawChanges(charts, overview);
    return charts;
}

}  // namespace qv::tool
