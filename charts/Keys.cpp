#include "charts/Keys.h"

#include <algorithm>
#include <numeric>
#include <span>

#include "charts/Numbers.h"

namespace qv::charts {
namespace {

constexpr double kSwatchBox = 14, kSwatchBoxHeight = 10;
constexpr int kRound = 0, kSquare = 1;  // line caps that draw marks as lines of length zero

void AppendBox(std::string& path, const Box& box) {
    path += 'M';
    AppendPoint(path, box.left, box.top);
    path += 'h';
    AppendCoordinate(path, box.Width());
    path += 'v';
    AppendCoordinate(path, box.Height());
    path += 'h';
    AppendCoordinate(path, -box.Width());
    path += 'z';
}

// Relative to a point, in halves of the mark's size.
struct Corner {
    double x, y;
};
constexpr Corner kTriangle[] = {{0, -1.15}, {1.1, 0.85}, {-1.1, 0.85}};
constexpr Corner kDiamond[] = {{0, -1.3}, {1.1, 0}, {0, 1.3}, {-1.1, 0}};
constexpr Corner kUpsideDown[] = {{0, 1.15}, {-1.1, -0.85}, {1.1, -0.85}};
constexpr Corner kBar[] = {{-1.3, -0.45}, {1.3, -0.45}, {1.3, 0.45}, {-1.3, 0.45}};

std::span<const Corner> Corners(int pattern) {
    switch (pattern) {
        case 2: return kTriangle;
        case 3: return kDiamond;
        case 4: return kUpsideDown;
        default: return kBar;
    }
}

}  // namespace

Keys::Keys(std::size_t count) : m_numbers(count) {
    std::iota(m_numbers.begin(), m_numbers.end(), 0);
}

std::string Keys::LineClasses(std::size_t key) const {
    return "line l" + std::to_string(Colour(key)) + " d" + std::to_string(HavePatterns() ? Pattern(key) : 0);
}

std::string Keys::MarkClasses(std::size_t key) const {
    const char* const kinds[] = {"round l", "square l"};
    return (Pattern(key) <= kSquare ? kinds[Pattern(key)] : "f") + std::to_string(Colour(key));
}

void DrawFilled(Svg& svg, const Keys& keys, std::size_t key, std::string_view path, std::u32string_view hint) {
    svg.Path(path, keys.FillClass(key), hint);
    if (keys.HavePatterns() && keys.Pattern(key) != 0) svg.Path(path, keys.PatternClass(key));
}

void AppendMark(std::string& path, int pattern, double x, double y, double size) {
    path += 'M';
    if (pattern == kRound || pattern == kSquare) {
        AppendPoint(path, x, y);
        path += "h0";
        return;
    }
    for (const Corner& corner : Corners(pattern)) {
        if (path.back() != 'M') path += 'L';
        AppendPoint(path, x + corner.x * size / 2, y + corner.y * size / 2);
    }
    path += 'z';
}

void DrawSwatch(Svg& svg, const Keys& keys, std::size_t key, Swatch swatch, double left, double middle) {
    const double right = left + kSwatchBox;
    std::string path;
    if (swatch == Swatch::Line) {
        svg.Line(left, middle, right, middle, keys.LineClasses(key));
    } else if (swatch == Swatch::Mark) {
        AppendMark(path, keys.Pattern(key), (left + right) / 2, middle, 7);
        svg << "<g stroke-width=\"7\">";
        svg.Path(path, keys.MarkClasses(key));
        svg << "</g>";
    } else {
        AppendBox(path, {left, middle - kSwatchBoxHeight / 2, right, middle + kSwatchBoxHeight / 2});
        DrawFilled(svg, keys, key, path);
    }
}

}  // namespace qv::charts
