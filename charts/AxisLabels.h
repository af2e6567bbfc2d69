#pragma once

#include <vector>

#include "charts/Svg.h"
#include "charts/Ticks.h"

/// @file The labels below a horizontal axis. They never overlap or leave their room.
namespace qv::charts {

inline constexpr double kTickSize = 12;

struct PlacedLabel {
    Label label;
    double x = 0, y = 0;  ///< y grows downwards from the axis
    Anchor anchor = Anchor::Middle;
    bool upright = false;
};

struct AxisLabels {
    std::vector<PlacedLabel> labels;
    std::vector<double> ticks;  ///< the positions of the axis's tick marks
    double height = 0;
};

/// The room for labels: the axis itself, and how far labels may extend beyond its ends and downwards.
struct LabelRoom {
    double left, right;
    double leftEnd, rightEnd;
    double height;
};

/// Places names centred in equal parts of the axis: in one line, in two, upright, or only for every second, third, …
/// part.
AxisLabels CategoryLabels(const std::vector<CString>& names, const LabelRoom& room);

/// Places as many round values as fit.
AxisLabels NumberLabels(const Range& range, bool logarithmic, const LabelRoom& room);
AxisLabels DateLabels(const Range& range, const LabelRoom& room);

}  // namespace qv::charts
