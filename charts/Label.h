#pragma once

#include <string>
#include <string_view>

namespace qv::charts {

/// A text as drawn, and its maximum width in common fonts.
class Label {
public:
    enum class Weight { Normal, Bold };

    Label() = default;
    Label(std::u32string text, double size, Weight weight = Weight::Normal);
    /// Takes a text in the process's code page.
    Label(std::string_view text, double size, Weight weight = Weight::Normal);

    /// Truncates the text to fit, with an ellipsis at its end; to nothing if not even that fits.
    void ShortenTo(double width);
    /// Removes and returns the leading words that fit; if the first word is too long, the part of it that fits.
    Label TakeLine(double width);

    const std::u32string& Text() const { return m_text; }
    const std::u32string& Whole() const { return m_whole; }
    bool IsShortened() const { return m_text != m_whole; }
    double Width() const { return m_width; }
    double Size() const { return m_size; }
    bool IsBold() const { return m_weight == Weight::Bold; }
    /// Whether a character's width is a guess, so that the text must be fitted to its width.
    bool IsGuessed() const;

private:
    double WidthOf(std::u32string_view text) const;
    /// Returns the number of characters that fit; a combining mark is never separated from its base.
    std::size_t Fitting(double width) const;

    std::u32string m_text, m_whole;
    double m_width = 0, m_size = 0;
    Weight m_weight = Weight::Normal;
};

/// The height of a line of text.
constexpr double LineHeight(double size) {
    return size * 1.25;
}

}  // namespace qv::charts
