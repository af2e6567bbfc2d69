#pragma once

#include <string>
#include <vector>

#include "charts/Svg.h"

/// @file How series, or slices, are distinguished: by a colour and also by a pattern, a dash or a marker shape.
namespace qv::charts {

inline constexpr int kColours = 8, kPatterns = 6;
/// The number of distinct pairs of colour and pattern.
inline constexpr std::size_t kMostKeys = kColours * kPatterns;

/// The size of a legend entry's name, its row height, and the width of its swatch.
inline constexpr double kKeySize = 12, kKeyRow = 20, kSwatchWidth = 20;

/// The form of the swatch beside a name.
enum class Swatch { Filled, Line, Mark };

/// The colour and pattern of each series or slice of a chart.
class Keys {
public:
    Keys() = default;
    /// By their numbers in a legend.
    explicit Keys(std::vector<int> numbers, bool shared) : m_numbers(std::move(numbers)), m_shared(shared) {}
    /// For a chart on its own: 0, 1, 2, …
    explicit Keys(std::size_t count);

    int Colour(std::size_t key) const { return m_numbers[key] % kColours; }
    int Pattern(std::size_t key) const { return (m_numbers[key] % kColours + m_numbers[key] / kColours) % kPatterns; }
    /// Whether there is a legend outside the chart.
    bool AreShared() const { return m_shared; }
    /// A single key needs no pattern.
    bool HavePatterns() const { return m_shared || m_numbers.size() > 1; }

    std::string FillClass(std::size_t key) const { return "f" + std::to_string(Colour(key)); }
    std::string PatternClass(std::size_t key) const { return "p" + std::to_string(Pattern(key)); }
    std::string LineClasses(std::size_t key) const;
    std::string MarkClasses(std::size_t key) const;

private:
    std::vector<int> m_numbers;
    bool m_shared = false;
};

/// Draws a filled shape with the pattern on top.
void DrawFilled(Svg& svg, const Keys& keys, std::size_t key, std::string_view path, std::u32string_view hint = {});

/// Appends a mark of width `size` to a path with the classes of MarkClasses.
void AppendMark(std::string& path, int pattern, double x, double y, double size);

/// Draws one swatch in a box of 14 by 10 pixels.
void DrawSwatch(Svg& svg, const Keys& keys, std::size_t key, Swatch swatch, double left, double middle);

/// Draws names in rows from the top of the box, in equal columns if there are several rows, and returns their height.
/// Uses at most a quarter of the box; the last entry then says how many names are omitted.
double DrawLegend(Svg& svg, const Box& box, const std::vector<CString>& names, const Keys& keys, Swatch swatch);

/// Appends the style rules and patterns of a picture with `keys` keys.
void AppendStyleSheet(Svg& svg, std::size_t keys);

}  // namespace qv::charts
