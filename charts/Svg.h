#pragma once

#include <string>
#include <string_view>

#include "charts/Label.h"
#include "charts/Series.h"

namespace qv::charts {

struct Point {
    double x, y;

    friend bool operator==(const Point&, const Point&) = default;
};

struct Box {
    double left = 0, top = 0, right = 0, bottom = 0;

    double Width() const { return right - left; }
    double Height() const { return bottom - top; }
    double Middle() const { return (left + right) / 2; }
    bool Meets(const Box& other) const {
        return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
    }
};

enum class Anchor { Start, Middle, End };

/// Builds the text of a picture. Classes are those of the style sheet (charts/StyleSheet.h).
class Svg {
public:
    explicit Svg(std::string id) : m_id(std::move(id)) {}

    const std::string& Id() const { return m_id; }
    std::string Take() { return std::move(m_out); }

    Svg& operator<<(std::string_view markup) {
        m_out += markup;
        return *this;
    }
    Svg& operator<<(char c) {
        m_out += c;
        return *this;
    }
    /// Appends a coordinate.
    Svg& operator<<(double value);
    Svg& operator<<(int value) { return *this << static_cast<double>(value); }
    Svg& Escaped(std::u32string_view text);

    /// `y` is the base line. An upright text runs from bottom to top, with `x` as its base line.
    void Text(const Label& label, double x, double y, Anchor anchor, std::string_view classes, bool upright = false);
    void Line(double x1, double y1, double x2, double y2, std::string_view classes);
    void Rect(const Box& box, std::string_view classes);
    /// Draws a path, with an optional tooltip.
    void Path(std::string_view data, std::string_view classes, std::u32string_view hint = {});
    /// Writes a table for screen readers only: drawn too small to be visible.
    void HiddenTable(const std::u32string& caption, const Table& table);

private:
    void Cell(const char* tag, std::string_view text);

    std::string m_id, m_out;
};

}  // namespace qv::charts
