#pragma once

#include "charts/AxisLabels.h"

namespace qv::charts {

/// A horizontal axis: of categories if there are names, else of numbers or dates.
struct HorizontalAxis {
    std::vector<CString> names;
    Range range;
    bool dates = false, logarithmic = false;
    bool roundedOut = false;  ///< extended to round values at its ends
    CString title;
};

struct VerticalAxis {
    Range range;
    bool logarithmic = false;
    CString title;
};

/// The area between two axes, and the mapping of values to it. The axes are drawn in two steps, below and above the
/// values.
class Plot {
public:
    Plot(Svg& svg, const Box& box, HorizontalAxis x, VerticalAxis y);

    const Box& Area() const { return m_area; }
    double X(double value) const { return m_xScale.At(value); }
    double Y(double value) const { return m_yScale.At(value); }
    /// The value at which bars and areas begin: 0, or the lower end of a logarithmic axis.
    double Base() const { return m_base; }
    /// The width of a category, and its centre.
    double PartWidth() const { return m_area.Width() / static_cast<double>(m_x.names.size()); }
    double PartMiddle(std::size_t i) const { return m_area.left + (static_cast<double>(i) + 0.5) * PartWidth(); }

    void DrawAxes();
    /// Draws the zero line, or the lower edge.
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
