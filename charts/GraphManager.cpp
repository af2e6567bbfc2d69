#include <algorithm>
#include <cmath>
#include <map>

#include "charts/Characters.h"
#include "charts/Picture.h"
#include "charts/Series.h"
#include "qvcommon/Checksum.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/Graph.h"

using namespace qv::charts;

namespace {

constexpr double kGap = 28, kLeastWidth = 120, kLeastHeight = 90, kHeadingSize = 13;

/// The names of all charts, each once, in the order in which they come.
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

// The cells of a grid, from left to right and down.
std::vector<Box> Cells(const Box& box, std::size_t count, int columns) {
    const int across = std::min(columns, static_cast<int>(count));
    const auto down =
        static_cast<int>((count + static_cast<std::size_t>(across) - 1) / static_cast<std::size_t>(across));
    const double width = (box.Width() + kGap) / across - kGap, height = (box.Height() + kGap) / down - kGap;
    if (width < kLeastWidth || height < kLeastHeight) AfxThrowInvalidArgException();
    std::vector<Box> cells;
    for (int i = 0; i < static_cast<int>(count); ++i) {
        const double left = box.left + i % across * (width + kGap), top = box.top + i / across * (height + kGap);
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

void CGraphManager::SetSize(int width, int height) {
    CheckSize(width, height);
    m_width = width;
    m_height = height;
}

void CGraphManager::SetId(const char* id) {
    CheckId(CString(id));
    m_id = id;
}

void CGraphManager::SetColumns(int columns) {
    if (columns < 1 || columns > 12) AfxThrowInvalidArgException();
    m_columns = columns;
}

CString CGraphManager::GetSvg() const {
    NameList names;
    std::vector<Keys> keys;
    std::string checksums = m_title + '\0' + m_description + '\0' + std::to_string(m_columns);
    Swatch swatch = Swatch::Filled;
    for (const auto& graph : m_graphs) {
        std::vector<int> numbers;
        for (const CString& name : graph->KeyNames()) numbers.push_back(names.NumberOf(name));
        keys.emplace_back(std::move(numbers), true);
        checksums += ' ' + std::to_string(graph->Checksum());
        swatch = &graph == &m_graphs.front() || graph->KeySwatch() == swatch ? graph->KeySwatch() : Swatch::Filled;
    }
    checksums += ' ' + std::to_string(m_width) + 'x' + std::to_string(m_height);
    const CString name = m_title.IsEmpty() ? CString("Charts") : m_title;
    CString description = m_description;
    for (std::size_t i = 0; m_description.IsEmpty() && i < m_graphs.size(); ++i)
        description += (i ? "; " : "") + m_graphs[i]->Name();
    Svg svg(m_id.IsEmpty() ? "qv" + std::to_string(MemCRC(checksums)) : m_id.AsStd());
    Box box = BeginPicture(svg, {svg.Id(), m_width, m_height, m_title, name, description}, names.Names().size());
    if (names.Names().size() > 1) box.top += DrawLegend(svg, box, names.Names(), Keys(names.Names().size()), swatch);
    if (m_graphs.empty()) DrawNoData(svg, box);
    const std::vector<Box> cells = m_graphs.empty() ? std::vector<Box>() : Cells(box, m_graphs.size(), m_columns);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const CGraph& graph = *m_graphs[i];
        const Box room =
            DrawHeading(svg, cells[i], Label(graph.m_title, kHeadingSize, Label::Weight::Bold), "subtitle");
        if (graph.HasData())
            graph.Draw(svg, room, keys[i]);
        else
            DrawNoData(svg, room);
    }
    EndDrawing(svg);
    for (const auto& graph : m_graphs) svg.HiddenTable(Characters(graph->Name()), graph->Values());
    EndPicture(svg);
    return CString(svg.Take());
}

void CGraphManager::SaveFile(const char* path) const {
    CFileUtils::SaveFile(path, GetSvg());
}
