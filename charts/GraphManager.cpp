#include <algorithm>
#include <cmath>
#include <map>

#include "charts/Characters.h"
#include "charts/Picture.h"
#include "charts/Series.h"
#include "qvcommon/Checksum.h"
#include "qvcommon/Graph.h"

using namespace qv::charts;

namespace {

constexpr double kChartGap = 28, kLeastWidth = 120, kLeastHeight = 90, kHeadingSize = 13;

/// The names of all charts, each once, in order of appearance.
class NameList {
public:
    int NumberOf(const CString& name) {
        const auto [entry, isNew] = m_numbers.try_emplace(name, static_cast<int>(m_names.size()));
        if (isNew) m_names.push_back(name);
        if (m_names.size() > kMostKeys) AfxThrowInvalidArgException();
        return entry->second;
    }
    const std::vector<CString>& Names() const { return m_names; }

private:
    std::map<std::string, int> m_numbers;
    std::vector<CString> m_names;
};

// The cells of a grid, in row-major order.
std::vector<Box> Cells(const Box& box, std::size_t count, int columns) {
    if (count == 0) return {};
    const int across = std::min(columns, static_cast<int>(count));
    const auto down =
        static_cast<int>((count + static_cast<std::size_t>(across) - 1) / static_cast<std::size_t>(across));
    const double width = (box.Width() + kChartGap) / across - kChartGap,
                 height = (box.Height() + kChartGap) / down - kChartGap;
    if (width < kLeastWidth || height < kLeastHeight) AfxThrowInvalidArgException();
    std::vector<Box> cells;
    for (int i = 0; i < static_cast<int>(count); ++i) {
        const int row = i / across, column = i % across;
        const double left = box.left + column * (width + kChartGap), top = box.top + row * (height + kChartGap);
        cells.push_back({left, top, left + width, top + height});
    }
    return cells;
}

}  // namespace

CGraphManager::CGraphManager() = default;
CGraphManager::~CGraphManager() = default;

void CGraphManager::Take(std::unique_ptr<CGraph> graph) {
    m_graphs.push_back(std::move(graph));
}

void CGraphManager::SetColumns(int columns) {
    if (columns < 1 || columns > 12) AfxThrowInvalidArgException();
    m_columns = columns;
}

CString CGraphManager::Description() const {
    if (!m_description.IsEmpty()) return m_description;
    CString all;
    for (const auto& graph : m_graphs) all += (all.IsEmpty() ? "" : "; ") + graph->Name();
    return all;
}

std::string CGraphManager::Id() const {
    if (!m_id.IsEmpty()) return m_id;
    std::string content = m_title + '\0' + m_description + '\0' + std::to_string(m_columns);
    for (const auto& graph : m_graphs) content += ' ' + std::to_string(graph->Checksum());
    content += ' ' + std::to_string(m_width) + 'x' + std::to_string(m_height);
    return "qv" + std::to_string(MemCRC(content));
}

// For charts of several kinds, the filled swatch suits all.
Swatch CGraphManager::KeySwatch() const {
    const auto isOther = [this](const auto& graph) { return graph->KeySwatch() != m_graphs[0]->KeySwatch(); };
    return m_graphs.empty() || std::ranges::any_of(m_graphs, isOther) ? Swatch::Filled : m_graphs[0]->KeySwatch();
}

void CGraphManager::DrawGraph(Svg& svg, const CGraph& graph, const Box& cell, const Keys& keys) const {
    const Box room = DrawHeading(svg, cell, Label(graph.m_title, kHeadingSize, Label::Weight::Bold), "subtitle");
    graph.Check();
    if (graph.HasData())
        graph.Draw(svg, room, keys);
    else
        DrawNoData(svg, room);
}

CString CGraphManager::GetSvg() const {
    NameList list;
    std::vector<Keys> keys;
    for (const auto& graph : m_graphs) {
        std::vector<int> numbers;
        for (const CString& name : graph->KeyNames()) numbers.push_back(list.NumberOf(name));
        keys.emplace_back(std::move(numbers), true);
    }
    const std::vector<CString>& names = list.Names();
    const CString title = m_title.IsEmpty() ? CString("Charts") : m_title;
    Svg svg(Id());
    Box box = BeginPicture(svg, {svg.Id(), m_width, m_height, m_title, title, Description()}, names.size());
    if (names.size() > 1) box.top += DrawLegend(svg, box, names, Keys(names.size()), KeySwatch());
    if (m_graphs.empty()) DrawNoData(svg, box);
    const std::vector<Box> cells = Cells(box, m_graphs.size(), m_columns);
    for (std::size_t i = 0; i < cells.size(); ++i) DrawGraph(svg, *m_graphs[i], cells[i], keys[i]);
    EndDrawing(svg);
    for (const auto& graph : m_graphs) svg.HiddenTable(Characters(graph->Name()), graph->Values());
    EndPicture(svg);
    return CString(svg.Take());
}
