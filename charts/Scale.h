#pragma once

#include <cmath>
#include <span>

#include "charts/Series.h"

namespace qv::charts {

/// The values of an axis, from `low` to `high`; initially empty.
struct Range {
    double low = 1, high = 0;

    bool IsEmpty() const { return low > high; }
    void Include(double value) {
        if (IsEmpty()) low = high = value;
        low = std::fmin(low, value);
        high = std::fmax(high, value);
    }
    /// Includes all values that can be drawn: finite, and above 0 on a logarithmic axis.
    void IncludeAll(std::span<const double> values, bool logarithmic);
};

/// Maps values to the range between two coordinates. Never overflows, however large the value.
class Scale {
public:
    Scale() = default;
    /// The range must be wider than 0, and above 0 for a logarithmic scale.
    Scale(const Range& range, bool logarithmic, double from, double to);

    double At(double value) const { return m_from + (Position(value) - m_low) * m_factor; }
    double From() const { return m_from; }
    double To() const { return m_to; }

private:
    // Halved, so that the difference of any two values is finite.
    double Position(double value) const { return m_logarithmic ? std::log10(value) : value / 2; }

    bool m_logarithmic = false;
    double m_low = 0, m_factor = 0, m_from = 0, m_to = 0;
};

/// Clamps a value to finite bounds.
double Bounded(double value);

}  // namespace qv::charts
