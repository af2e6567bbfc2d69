#include "charts/Scale.h"

#include <algorithm>
#include <limits>

namespace qv::charts {

void Range::IncludeAll(std::span<const double> values, bool logarithmic) {
    for (const double value : values)
        if (!IsMissing(value) && (value > 0 || !logarithmic)) Include(value);
}

Scale::Scale(const Range& range, bool logarithmic, double from, double to)
    : m_logarithmic(logarithmic), m_from(from), m_to(to) {
    m_low = Position(range.low);
    m_factor = (to - from) / (Position(range.high) - m_low);
    if (!std::isfinite(m_factor)) m_factor = 0;
}

double Bounded(double value) {
    constexpr double kMost = std::numeric_limits<double>::max();
    return std::clamp(value, -kMost, kMost);
}

}  // namespace qv::charts
