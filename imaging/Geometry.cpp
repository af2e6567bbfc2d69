#include "imaging/Geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qv::imaging {

double SinPi(double x) {
    double angle = x - 2 * std::floor((x + 1) / 2);  // -1 to 1
    if (angle > 0.5) angle = 1 - angle;
    if (angle < -0.5) angle = -1 - angle;
    const double radians = angle * std::numbers::pi, square = radians * radians;
    double term = radians, sum = radians;
    for (int n = 2; n <= 22; n += 2) {
        term *= -square / (n * (n + 1));
        sum += term;
    }
    return sum;
}

Raster MirroredLeftRight(Raster source) {
    for (int y = 0; y < source.Height(); ++y) std::reverse(source.Row(y), source.Row(y) + source.Width());
    return source;
}

Raster MirroredUpDown(Raster source) {
    for (int y = 0; y < source.Height() / 2; ++y)
        std::swap_ranges(source.Row(y), source.Row(y) + source.Width(), source.Row(source.Height() - 1 - y));
    return source;
}

Raster Cropped(const Raster& source, int x, int y, int width, int height) {
    Raster result(width, height);
    for (int row = 0; row < height; ++row) std::copy_n(source.Row(y + row) + x, width, result.Row(row));
    return result;
}

namespace {

Raster QuarterTurned(const Raster& source, bool clockwise) {
    // Works in squares of pixels, so that source and target both stay in the cache.
    constexpr int kSquare = 32;
    Raster result(source.Height(), source.Width());
    for (int top = 0; top < result.Height(); top += kSquare)
        for (int left = 0; left < result.Width(); left += kSquare)
            for (int y = top; y < std::min(top + kSquare, result.Height()); ++y) {
                const int column = clockwise ? y : result.Height() - 1 - y;
                for (int x = left; x < std::min(left + kSquare, result.Width()); ++x)
                    result.Row(y)[x] = source.Row(clockwise ? result.Width() - 1 - x : x)[column];
            }
    return result;
}

}  // namespace

Raster Turned(Raster source, int quarters) {
    if (quarters % 2) return QuarterTurned(source, quarters == 1);
    if (quarters == 2) std::reverse(source.begin(), source.end());
    return source;
}

}  // namespace qv::imaging
