#pragma once

#include <string>
#include <vector>

#include "charts/Svg.h"

/// @file What tells series, or slices, from each other: a colour and, besides, a pattern, a dash or a shape of marks.
namespace qv::charts {

inline constexpr int kColours = 8, kPatterns = 6;
/// Each has a pair of colour and pattern of its own.
inline constexpr std::size_t kMostKeys = kColours * kPatterns;

/// A key's name is so large, in a row of this height, after a swatch of this width.
inline constexpr double kKeySize = 12, kKeyRow = 20, kSwatchWidth = 20;

/// What a key looks like beside its name.
enum class Swatch { Filled, Line, Mark };

/// The colour and pattern of each series or slice of a chart.
class Keys {
public:
    Keys() = default;
    /// By their numbers in a legend.
    explicit Keys(std::vector<int> numbers, bool shared) : m_numbers(std::move(numbers)), m_shared(shared) {}
    /// A chart of its own: 0, 1, 2, …
    explicit Keys(std::size_t count);

    int Colour(std::size_t key) const { return m_numbers[key] % kColours; }
    int Pattern(std::size_t key) const { return (m_numbers[key] % kColours + m_numbers[key] / kColours) % kPatterns; }
    /// Whether there is a legend outside of the chart.
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

/// Draws a filled shape, with the pattern upon it.
void DrawFilled(Svg& svg, const Keys& keys, std::size_t key, std::string_view path, std::u32string_view hint = {});

/// Appends a mark, `size` wide, to a path in the classes of MarkClasses.
void AppendMark(std::string& path, int pattern, double x, double y, double size);

/// Draws one swatch in a box of 14 by 10 pixels.
void DrawSwatch(Svg& svg, const Keys& keys, std::size_t key, Swatch swatch, double left, double middle);

/// Draws names in rows from the top of the box, in equal columns when there are several rows, and returns their height. At
/// most a quarter of the box is used; the last entry then says how many names are left out.
double DrawLegend(Svg& svg, const Box& box, const std::vector<CString>& names, const Keys& keys, Swatch swatch);

/// The style rules and patterns of a picture with so many keys.
void AppendStyleSheet(Svg& svg, std::size_t keys);

}  // namespace qv::charts
