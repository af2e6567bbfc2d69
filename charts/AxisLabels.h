#pragma once

#include <vector>

#include "charts/Svg.h"
#include "charts/Ticks.h"

/// @file The labels below a horizontal axis. No two overlap, and none leaves the room that it is given.
namespace qv::charts {

inline constexpr double kTickSize = 12;

struct PlacedLabel {
    Label label;
    double x = 0, y = 0;  ///< y counts down from the axis
    Anchor anchor = Anchor::Middle;
    bool upright = false;
};

struct AxisLabels {
    std::vector<PlacedLabel> labels;
    std::vector<double> ticks;  ///< where the axis gets a mark
    double height = 0;
};

/// The room of labels: the axis itself, and how far labels may go beyond its ends and down.
struct LabelRoom {
    double left, right;
    double leftEnd, rightEnd;
    double height;
};

/// Names in the middles of equal parts of the axis: in one line, in two, upright, or of every second, third, … part.
AxisLabels CategoryLabels(const std::vector<CString>& names, const LabelRoom& room);

/// As many round values as have room.
AxisLabels NumberLabels(const Range& range, bool logarithmic, const LabelRoom& room);
AxisLabels DateLabels(const Range& range, const LabelRoom& room);

}  // namespace qv::charts
