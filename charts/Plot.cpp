#include "charts/Plot.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "charts/DateTicks.h"

namespace qv::charts {
namespace {

constexpr double kTitleRow = 20, kTickDistance = 30, kBelowAxis = 20, kLabelGap = 8, kMark = 4;
constexpr double kLeastWithTitles = 110;      // height of a picture whose axes have titles
constexpr double kLine = kTickSize + 1;       // minimum distance of labels one below the other
constexpr double kAscent = kTickSize * 0.36;  // from a line's middle to its base line

}  // namespace

Plot::Plot(Svg& svg, const Box& box, HorizontalAxis x, VerticalAxis y)
    : m_svg(svg), m_box(box), m_x(std::move(x)), m_y(std::move(y)) {
    if (box.Height() < kLeastWithTitles) m_x.title = m_y.title = CString();
    Box inner = box;
    inner.top += m_y.title.IsEmpty() ? kTickSize / 2 : kTitleRow + kTickSize / 2;
    inner.bottom -= m_x.title.IsEmpty() ? 0 : kTitleRow;
    PlaceVertical(inner);
    PlaceHorizontal(inner);
    m_yScale = Scale(m_y.range, m_y.logarithmic, m_area.bottom, m_area.top);
    const double zero = std::clamp(0.0, m_y.range.low, m_y.range.high);
    m_base = m_yScale.At(m_y.logarithmic ? m_y.range.low : zero);
}

void Plot::PlaceVertical(const Box& box) {
    const int most = std::clamp(static_cast<int>((box.Height() - kBelowAxis) / kTickDistance), 2, 10);
    Widen(m_y.range, m_y.logarithmic);
    RoundOut(m_y.range, most, m_y.logarithmic);
    m_yTicks = NumberTicks(m_y.range, most, m_y.logarithmic);
    double widest = 0;
    for (const Tick& tick : m_yTicks) {
        m_yLabels.emplace_back(tick.text, kTickSize);
        m_yLabels.back().ShortenTo(box.Width() / 3);
        widest = std::max(widest, m_yLabels.back().Width());
    }
    m_area = {box.left + widest + kLabelGap, box.top, box.right, box.bottom};
}

void Plot::PlaceHorizontal(const Box& box) {
    const LabelRoom room{m_area.left, m_area.right, box.left, box.right, box.Height() * 0.4};
    if (m_x.names.empty()) {
        if (m_x.dates)
            WidenDates(m_x.range);
        else
            Widen(m_x.range, m_x.logarithmic);
        if (m_x.roundedOut && !m_x.dates)
            RoundOut(m_x.range, std::max(2, static_cast<int>(m_area.Width() / 80)), m_x.logarithmic);
        m_xLabels = m_x.dates ? DateLabels(m_x.range, room) : NumberLabels(m_x.range, m_x.logarithmic, room);
        m_xScale = Scale(m_x.range, m_x.logarithmic, m_area.left, m_area.right);
    } else {
        m_xLabels = CategoryLabels(m_x.names, room);
        m_xScale = Scale({0.5, static_cast<double>(m_x.names.size()) + 0.5}, false, m_area.left, m_area.right);
    }
    m_area.bottom = std::max(m_area.top + 1, m_area.bottom - m_xLabels.height);
}

void Plot::DrawAxes() {
    double labelled = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < m_yTicks.size(); ++i) {
        const double y = m_yScale.At(m_yTicks[i].value);
        m_svg.Line(m_area.left, y, m_area.right, y, "grid");
        if (std::abs(y - labelled) < kLine) continue;
        labelled = y;
        m_svg.Text(m_yLabels[i], m_area.left - kLabelGap, y + kAscent, Anchor::End, "");
    }
    for (const double x : m_xLabels.ticks) m_svg.Line(x, m_area.bottom, x, m_area.bottom + kMark, "axis");
    for (const PlacedLabel& placed : m_xLabels.labels)
        m_svg.Text(placed.label, placed.x, m_area.bottom + placed.y, placed.anchor, "", placed.upright);
    Label xTitle(m_x.title, kTickSize), yTitle(m_y.title, kTickSize);
    xTitle.ShortenTo(m_box.Width());
    yTitle.ShortenTo(m_box.Width());
    m_svg.Text(xTitle, m_area.right, m_box.bottom - 2, Anchor::End, "");
    m_svg.Text(yTitle, m_box.left, m_box.top + kTickSize - 2, Anchor::Start, "");
}

void Plot::DrawBaseLine() {
    m_svg.Line(m_area.left, m_base, m_area.right, m_base, "axis");
    if (!m_xLabels.ticks.empty() && m_base < m_area.bottom)
        m_svg.Line(m_area.left, m_area.bottom, m_area.right, m_area.bottom, "axis");
}

}  // namespace qv::charts
