#include <algorithm>
#include <cmath>
#include <numbers>

#include "charts/Characters.h"
#include "charts/Folding.h"
#include "charts/Keys.h"
#include "charts/Numbers.h"
#include "charts/Scale.h"
#include "qvcommon/Graph.h"

using namespace qv::charts;

namespace {

constexpr double kColumnGap = 16;
constexpr double kLeastBeside = 380;  // minimum width for the table beside the pie
constexpr double kLeastShare = 0.02, kLeastRadius = 36, kRing = 12;

struct Slice {
    CString name;
    double value;
    double share;
};

bool HasShare(double value) {
    return !IsMissing(value) && value > 0;
}

std::vector<Slice> SlicesOf(const std::vector<double>& values, int most, const auto& nameOf) {
    std::vector<std::size_t> positions;
    double greatest = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!HasShare(values[i])) continue;
        positions.push_back(i);
        greatest = std::max(greatest, values[i]);
    }
    const Folding folding =
        Fold(positions.size(), static_cast<std::size_t>(most), [&](std::size_t i) { return values[positions[i]]; });
    std::vector<Slice> slices;
    for (const std::size_t i : folding.kept) slices.push_back({nameOf(positions[i]), values[positions[i]], 0});
    double all = 0;
    Slice others{"Others (" + std::to_string(folding.folded) + ')', 0, 0};
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const double value = values[positions[i]], part = value / greatest;
        all += part;
        if (!folding.folded || folding.isKept[i]) continue;
        others.value = Bounded(others.value + value);
        others.share += part;  // the sum of the values may exceed all doubles
    }
    for (Slice& slice : slices) slice.share = slice.value / greatest;
    if (folding.folded) slices.push_back(others);
    for (Slice& slice : slices) slice.share /= all;
    return slices;
}

struct Circle {
    double x, y, radius;

    Point At(double share, double factor = 1) const {
        const double angle = 2 * std::numbers::pi * share;
        return {x + std::sin(angle) * radius * factor, y - std::cos(angle) * radius * factor};
    }
};

void AppendArc(std::string& path, const Circle& circle, const Point& to, bool large) {
    path += 'A';
    AppendPoint(path, circle.radius, circle.radius);
    path += large ? " 0 1 1 " : " 0 0 1 ";
    AppendPoint(path, to.x, to.y);
}

void AppendStep(std::string& path, char command, const Point& point) {
    path += command;
    AppendPoint(path, point.x, point.y);
}

std::string SlicePath(const Circle& circle, double from, double to) {
    std::string path;
    const bool whole = to - from > 0.9999;
    if (!whole) AppendStep(path, 'M', {circle.x, circle.y});
    AppendStep(path, whole ? 'M' : 'L', circle.At(from));
    if (to - from > 0.5) AppendArc(path, circle, circle.At((from + to) / 2), false);
    AppendArc(path, circle, circle.At(to), false);
    return path + 'z';
}

// Percentages around the circle; those that would overlap another one are omitted.
class Percentages {
public:
    Percentages(Svg& svg, const Circle& circle) : m_svg(svg), m_circle(circle) {}

    void Draw(double middle, double share) {
        if (share < kLeastShare) return;
        const Label label(PercentText(share), kKeySize);
        const Point at = m_circle.At(middle, (m_circle.radius + kRing) / m_circle.radius);
        const double side = std::sin(2 * std::numbers::pi * middle);
        const Anchor anchor = std::abs(side) < 0.2 ? Anchor::Middle : side > 0 ? Anchor::Start : Anchor::End;
        const double left = at.x - label.Width() * static_cast<int>(anchor) / 2;
        const Box box{left, at.y - kKeyRow / 2, left + label.Width(), at.y + kKeyRow / 2};
        if (std::ranges::any_of(m_placed, [&](const Box& placed) { return placed.Meets(box); })) return;
        m_placed.push_back(box);
        m_svg.Text(label, at.x, at.y + kKeySize * 0.36, anchor, "");
    }

private:
    Svg& m_svg;
    const Circle& m_circle;
    std::vector<Box> m_placed;
};

void DrawPie(Svg& svg, const Box& box, const std::vector<Slice>& slices, const Keys& keys) {
    const double label = Label(U"00.0%", kKeySize).Width() + kRing;
    const double labelled = std::min(box.Width() / 2 - label, box.Height() / 2 - kKeySize - kRing);
    const bool hasLabels = labelled >= kLeastRadius;
    const double radius = hasLabels ? labelled : std::max(8.0, std::min(box.Width(), box.Height()) / 2);
    const Circle circle{box.Middle(), (box.top + box.bottom) / 2, radius};
    Percentages percentages(svg, circle);
    double from = 0;
    std::string borders;
    for (std::size_t i = 0; i < slices.size(); ++i) {
        const double to = std::min(1.0, from + slices[i].share);
        const std::string path = SlicePath(circle, from, to);
        const Label percent(PercentText(slices[i].share), kKeySize);
        DrawFilled(svg, keys, i, path,
                   Characters(slices[i].name + ": " + ValueText(slices[i].value) + ", ") + percent.Text());
        borders += path;
        if (hasLabels) percentages.Draw((from + to) / 2, slices[i].share);
        from = to;
    }
    if (slices.size() > 1) svg.Path(borders, "slice");
}

/// Names, values and percentages, with numbers right-aligned.
class SliceTable {
public:
    SliceTable(const std::vector<Slice>& slices, double width) {
        std::vector<double> values;
        values.reserve(slices.size());
        for (const Slice& slice : slices) values.push_back(slice.value);
        const std::vector<std::u32string> texts = AlignedTexts(values);
        for (std::size_t i = 0; i < slices.size(); ++i) {
            m_names.emplace_back(slices[i].name, kKeySize);
            m_values.emplace_back(texts[i], kKeySize);
            m_shares.emplace_back(PercentText(slices[i].share), kKeySize);
            m_values.back().ShortenTo(width / 3);
            m_valueWidth = std::max(m_valueWidth, m_values.back().Width());
            m_shareWidth = std::max(m_shareWidth, m_shares.back().Width());
        }
        const double numbers = kSwatchWidth + m_valueWidth + m_shareWidth + 2 * kColumnGap;
        for (Label& name : m_names) {
            name.ShortenTo(width - numbers);
            m_nameWidth = std::max(m_nameWidth, name.Width());
        }
        m_width = numbers + m_nameWidth;
    }

    double Width() const { return m_width; }
    double Height() const { return kKeyRow * static_cast<double>(m_names.size()); }

    void Draw(Svg& svg, const Keys& keys, double left, double top, double bottom) const {
        const auto rows = static_cast<std::size_t>(std::max(1.0, (bottom - top + 1) / kKeyRow));
        const std::size_t shown = m_names.size() <= rows ? m_names.size() : rows - 1;
        for (std::size_t i = 0; i < shown; ++i, top += kKeyRow) {
            const double base = top + kKeyRow / 2 + 4;
            DrawSwatch(svg, keys, i, Swatch::Filled, left, top + kKeyRow / 2);
            svg.Text(m_names[i], left + kSwatchWidth, base, Anchor::Start, "key");
            svg.Text(m_values[i], left + m_width - m_shareWidth - kColumnGap, base, Anchor::End, "");
            svg.Text(m_shares[i], left + m_width, base, Anchor::End, "");
        }
        if (shown == m_names.size()) return;
        Label rest("+ " + std::to_string(m_names.size() - shown) + " more", kKeySize);
        rest.ShortenTo(m_width);
        svg.Text(rest, left, top + kKeyRow / 2 + 4, Anchor::Start, "key");
    }

private:
    std::vector<Label> m_names, m_values, m_shares;
    double m_nameWidth = 0, m_valueWidth = 0, m_shareWidth = 0, m_width = 0;
};

}  // namespace

void CPieGraph::SetMostSlices(int count) {
    if (count < 2 || count > 24) AfxThrowInvalidArgException();
    m_mostSlices = count;
}

bool CPieGraph::HasData() const {
    return !AllSeries().empty() && std::ranges::any_of(AllSeries()[0].y, HasShare);
}

std::vector<CString> CPieGraph::KeyNames() const {
    if (!HasData()) return {};
    std::vector<CString> names;
    for (const Slice& slice : SlicesOf(AllSeries()[0].y, m_mostSlices, [this](std::size_t i) { return CategoryAt(i); }))
        names.push_back(slice.name);
    return names;
}

void CPieGraph::Draw(Svg& svg, const Box& box, const Keys& keys) const {
    const auto slices = SlicesOf(AllSeries()[0].y, m_mostSlices, [this](std::size_t i) { return CategoryAt(i); });
    if (keys.AreShared()) return DrawPie(svg, box, slices, keys);
    if (box.Width() >= kLeastBeside) {
        const SliceTable table(slices, box.Width() * 0.55);
        const double left = box.right - table.Width();
        DrawPie(svg, {box.left, box.top, left - 2 * kColumnGap, box.bottom}, slices, keys);
        table.Draw(svg, keys, left, std::max(box.top, (box.top + box.bottom - table.Height()) / 2), box.bottom);
    } else {
        const SliceTable table(slices, box.Width());
        const double top = box.bottom - std::min(table.Height(), box.Height() / 2);
        DrawPie(svg, {box.left, box.top, box.right, top - kColumnGap / 2}, slices, keys);
        table.Draw(svg, keys, box.left, top, box.bottom);
    }
}

Table CPieGraph::Values() const {
    const std::vector<Series> first(AllSeries().begin(), AllSeries().begin() + (AllSeries().empty() ? 0 : 1));
    return TableOf("Category", first, CountPositions(), [this](std::size_t i) { return CategoryAt(i); });
}

std::string CPieGraph::Settings() const {
    return "pie " + std::to_string(m_mostSlices);
}
