#include <algorithm>

#include "charts/Keys.h"

namespace qv::charts {
namespace {

constexpr double kKeyGap = 20, kWidest = 240, kBelowKeys = 6;

std::vector<Label> LabelsOf(const std::vector<CString>& names, double width) {
    std::vector<Label> labels;
    for (const CString& name : names) {
        labels.emplace_back(name, kKeySize);
        labels.back().ShortenTo(std::min(kWidest, width - kSwatchWidth));
    }
    return labels;
}

// The start positions of entries in their row.
class Columns {
public:
    Columns(const std::vector<Label>& labels, double width) {
        double all = 0;
        for (const Label& label : labels) {
            all += kSwatchWidth + label.Width() + kKeyGap;
            m_widest = std::max(m_widest, kSwatchWidth + label.Width() + kKeyGap);
        }
        m_oneRow = all - kKeyGap <= width;
        m_count =
            m_oneRow ? labels.size() : std::max<std::size_t>(1, static_cast<std::size_t>((width + kKeyGap) / m_widest));
    }

    std::size_t Count() const { return m_count; }
    double Width(const Label& label) const { return m_oneRow ? kSwatchWidth + label.Width() + kKeyGap : m_widest; }

private:
    bool m_oneRow = true;
    double m_widest = 0;
    std::size_t m_count = 1;
};

}  // namespace

double DrawLegend(Svg& svg, const Box& box, const std::vector<CString>& names, const Keys& keys, Swatch swatch) {
    const std::vector<Label> labels = LabelsOf(names, box.Width());
    const Columns columns(labels, box.Width());
    const auto mostRows = std::max<std::size_t>(1, static_cast<std::size_t>(box.Height() / 4 / kKeyRow));
    const std::size_t room = mostRows * columns.Count();
    const std::size_t shown = labels.size() <= room ? labels.size() : room - 1;
    double x = box.left, y = box.top;
    for (std::size_t i = 0; i < std::min(labels.size(), room); ++i) {
        if (i > 0 && i % columns.Count() == 0) {
            x = box.left;
            y += kKeyRow;
        }
        if (i < shown) {
            DrawSwatch(svg, keys, i, swatch, x, y + kKeyRow / 2 - 4);
            svg.Text(labels[i], x + kSwatchWidth, y + kKeyRow / 2, Anchor::Start, "key");
        } else {
            Label rest("+ " + std::to_string(labels.size() - shown) + " more", kKeySize);
            rest.ShortenTo(columns.Width(labels[i]));
            svg.Text(rest, x, y + kKeyRow / 2, Anchor::Start, "key");
        }
        x += columns.Width(labels[i]);
    }
    return y + kKeyRow + kBelowKeys - box.top;
}

}  // namespace qv::charts
