#pragma once

#include <string>
#include <string_view>

namespace qv::charts {

/// A text as it is drawn, and the room that it takes at most in common fonts.
class Label {
public:
    enum class Weight { Normal, Bold };

    Label() = default;
    Label(std::u32string text, double size, Weight weight = Weight::Normal);
    /// A text in the process's code page.
    Label(std::string_view text, double size, Weight weight = Weight::Normal);

    /// Cuts it so that it fits, with an ellipsis at its end; to nothing where not even that fits.
    void ShortenTo(double width);
    /// Cuts off its first words that fit, and returns them; as much of a first word as fits, where that is too long.
    Label TakeLine(double width);

    const std::u32string& Text() const { return m_text; }
    const std::u32string& Whole() const { return m_whole; }
    bool IsShortened() const { return m_text != m_whole; }
    double Width() const { return m_width; }
    double Size() const { return m_size; }
    bool IsBold() const { return m_weight == Weight::Bold; }
    /// Whether the width of a character is a guess, so that the text has to be fitted into its width.
    bool IsGuessed() const;

private:
    double WidthOf(std::u32string_view text) const;
    /// How many characters fit, never cutting off a mark of the last one.
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
