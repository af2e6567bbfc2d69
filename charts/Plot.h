#pragma once

#include "charts/AxisLabels.h"

namespace qv::charts {

/// What a horizontal axis has: categories where there are names, else numbers or dates.
struct HorizontalAxis {
    std::vector<CString> names;
    Range range;
    bool dates = false, logarithmic = false;
    bool roundedOut = false;  ///< to round values at its ends
    CString title;
};

struct VerticalAxis {
    Range range;
    bool logarithmic = false;
    CString title;
};

/// The room between two axes, and where values lie in it. The axes are drawn in two steps, below and above the values.
class Plot {
public:
    Plot(Svg& svg, const Box& box, HorizontalAxis x, VerticalAxis y);

    const Box& Area() const { return m_area; }
    double X(double value) const { return m_xScale.At(value); }
    double Y(double value) const { return m_yScale.At(value); }
    /// Where bars and areas begin: 0, or the lower end of a logarithmic axis.
    double Base() const { return m_base; }
    /// The width of a category, and the middle of one.
    double PartWidth() const { return m_area.Width() / static_cast<double>(m_x.names.size()); }
    double PartMiddle(std::size_t i) const { return m_area.left + (static_cast<double>(i) + 0.5) * PartWidth(); }

    void DrawAxes();
    /// The line of zero, or the lower edge.
    void DrawBaseLine();

private:
    void PlaceVertical(const Box& box);
    void PlaceHorizontal(const Box& box);

    Svg& m_svg;
    Box m_box, m_area;
    HorizontalAxis m_x;
    VerticalAxis m_y;
    Scale m_xScale, m_yScale;
    double m_base = 0;
    std::vector<Tick> m_yTicks;
    std::vector<Label> m_yLabels;
    AxisLabels m_xLabels;
};

}  // namespace qv::charts
