#include "qvcommon/Graph.h"

#include <algorithm>

#include "charts/Characters.h"
#include "charts/Picture.h"
#include "charts/Series.h"
#include "platform/Hex.h"
#include "qvcommon/Checksum.h"
#include "qvcommon/FileUtils.h"

using namespace qv::charts;

CGraphPicture::CGraphPicture() = default;
CGraphPicture::CGraphPicture(const CGraphPicture&) = default;
CGraphPicture::CGraphPicture(CGraphPicture&&) noexcept = default;
CGraphPicture& CGraphPicture::operator=(const CGraphPicture&) = default;
CGraphPicture& CGraphPicture::operator=(CGraphPicture&&) noexcept = default;
CGraphPicture::~CGraphPicture() = default;

void CGraphPicture::SetSize(int width, int height) {
    CheckSize(width, height);
    m_width = width;
    m_height = height;
}

void CGraphPicture::SetId(const char* id) {
    CheckId(CString(id));
    m_id = id;
}

void CGraphPicture::SaveFile(const char* path) const {
    CFileUtils::SaveFile(path, GetSvg());
}

CGraph::CGraph() = default;
CGraph::CGraph(const CGraph&) = default;
CGraph::CGraph(CGraph&&) noexcept = default;
CGraph& CGraph::operator=(const CGraph&) = default;
CGraph& CGraph::operator=(CGraph&&) noexcept = default;
CGraph::~CGraph() = default;

void CGraph::SetCategories(CStringArray categories) {
    m_categories = std::move(categories);
}

int CGraph::AddSeries(std::string_view name, std::vector<double> values) {
    return Append(name, {}, std::move(values));
}

int CGraph::GetSeriesCount() const {
    return static_cast<int>(m_series.size());
}

int CGraph::Append(std::string_view name, std::vector<double> x, std::vector<double> y) {
    if (m_series.size() == kMostKeys) AfxThrowInvalidArgException();
    m_series.push_back({name, std::move(x), std::move(y)});
    return GetSeriesCount() - 1;
}

CString CGraph::CategoryAt(std::size_t position) const {
    if (position < m_categories.AsStd().size()) return m_categories.AsStd()[position];
    return CString(std::to_string(position + 1));
}

std::size_t CGraph::CountPositions() const {
    std::size_t count = 0;
    for (const Series& series : m_series) count = std::max(count, series.y.size());
    return count;
}

std::vector<CString> CGraph::KeyNames() const {
    std::vector<CString> names;
    for (const Series& series : m_series) names.push_back(series.name);
    return names;
}

Swatch CGraph::KeySwatch() const {
    return Swatch::Filled;
}

CString CGraph::Name() const {
    return m_title.IsEmpty() ? CString(Kind()) : m_title;
}

CString CGraph::Description() const {
    if (!m_description.IsEmpty()) return m_description;
    return CString(Kind()) + ", series: " + std::to_string(m_series.size()) +
           ", values: " + std::to_string(CountPositions());
}

unsigned long CGraph::Checksum() const {
    std::string settings = Settings();
    for (const CString* const text : {&m_title, &m_description}) settings += *text + '\0';
    for (const CString& category : m_categories) settings += category + '\0';
    for (const Series& series : m_series) {
        settings += series.name + '\0';
        for (const std::vector<double>* const values : {&series.x, &series.y}) {
            const auto* const bytes = reinterpret_cast<const char*>(values->data());
            settings += std::to_string(MemCRC(std::string_view(bytes, values->size() * sizeof(double)))) + ' ';
        }
    }
    return MemCRC(settings + std::to_string(m_width) + 'x' + std::to_string(m_height));
}

CString CGraph::GetSvg() const {
    Check();
    const std::vector<CString> names = KeyNames();
    Svg svg(m_id.IsEmpty() ? "qv" + std::to_string(Checksum()) : m_id.AsStd());
    Box box = BeginPicture(svg, {svg.Id(), m_width, m_height, m_title, Name(), Description()}, names.size());
    const Keys keys(names.size());
    if (!HasData()) {
        DrawNoData(svg, box);
    } else {
        if (names.size() > 1 && !HasOwnLegend()) box.top += DrawLegend(svg, box, names, keys, KeySwatch());
        Draw(svg, box, keys);
    }
    EndDrawing(svg);
    svg.HiddenTable(Characters(Name()), Values());
    EndPicture(svg);
    return CString(svg.Take());
}

bool CAxisGraph::HasData() const {
    return std::ranges::any_of(AllSeries(), [this](const Series& series) {
        return std::ranges::any_of(series.y, [this](double y) { return !IsMissing(y) && (!m_logarithmic || y > 0); });
    });
}

std::string CAxisGraph::Settings() const {
    return m_xTitle + '\0' + m_yTitle + '\0' + (m_logarithmic ? 'l' : ' ');
}
