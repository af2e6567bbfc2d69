#include "charts/Label.h"

#include <algorithm>
#include <array>

#include "charts/Characters.h"

namespace qv::charts {
namespace {

// Advance widths of U+0020 to U+007E in thousandths of the size, those of the widest common sans-serif fonts.
constexpr std::array<short, 95> kAscii = {
    318, 401, 460, 838, 636, 950, 780, 275, 390, 390, 500, 838, 318, 361,  318, 337, 636, 636, 636,
    636, 636, 636, 636, 636, 636, 636, 337, 337, 838, 838, 838, 531, 1000, 684, 686, 698, 770, 632,
    575, 775, 752, 295, 295, 656, 557, 863, 748, 787, 603, 787, 695, 635,  611, 732, 684, 989, 685,
    611, 685, 390, 337, 390, 838, 500, 500, 613, 635, 550, 635, 615, 352,  635, 634, 278, 278, 579,
    278, 974, 634, 612, 635, 635, 411, 521, 392, 634, 592, 818, 592, 592,  525, 636, 337, 636, 838};
constexpr double kBold = 1.2;

struct Script {
    char32_t last;
    short width;
    bool guessed;
};

// Each range is given by its end; combining marks are handled earlier.
constexpr Script kScripts[] = {
    {0xBF, 700, false},    {0xDE, 760, false},    {0x17F, 640, false},   {0x36F, 800, true},    {0x3FF, 680, false},
    {0x52F, 740, false},   {0x10FF, 800, true},   {0x11FF, 1000, true},  {0x2012, 800, true},   {0x2026, 1000, false},
    {0x2211, 900, true},   {0x2212, 838, false},  {0x2E7F, 1000, true},  {0x9FFF, 1000, false}, {0xABFF, 1000, true},
    {0xD7A3, 1000, false}, {0x1F2FF, 1000, true}, {0x10FFFF, 1250, true}};

const Script& ScriptOf(char32_t c) {
    return *std::ranges::find_if(kScripts, [c](const Script& script) { return c <= script.last; });
}

bool IsAscii(char32_t c) {
    return c >= 0x20 && c < 0x7F;
}

int Thousandths(char32_t c) {
    if (IsAscii(c)) return kAscii[c - 0x20];
    return IsCombining(c) ? 0 : ScriptOf(c).width;
}

}  // namespace

Label::Label(std::u32string text, double size, Weight weight)
    : m_text(std::move(text)), m_whole(m_text), m_size(size), m_weight(weight) {
    m_width = WidthOf(m_text);
}

Label::Label(std::string_view text, double size, Weight weight) : Label(Characters(text), size, weight) {}

double Label::WidthOf(std::u32string_view text) const {
    long sum = 0;
    for (const char32_t c : text) sum += Thousandths(c);
    return static_cast<double>(sum) * m_size / 1000 * (IsBold() ? kBold : 1);
}

std::size_t Label::Fitting(double width) const {
    std::size_t count = 0;
    for (double used = 0; count < m_text.size(); ++count) {
        used += WidthOf(std::u32string_view(m_text).substr(count, 1));
        if (used > width) break;
    }
    while (count > 0 && count < m_text.size() && IsCombining(m_text[count])) --count;
    return count;
}

void Label::ShortenTo(double width) {
    if (m_width <= width) return;
    m_text.resize(Fitting(width - WidthOf(std::u32string_view(&kEllipsis, 1))));
    while (m_text.ends_with(U' ')) m_text.pop_back();
    m_text += kEllipsis;
    m_width = WidthOf(m_text);
    if (m_width <= width) return;
    m_text.clear();
    m_width = 0;
}

Label Label::TakeLine(double width) {
    std::size_t end = Fitting(width);
    if (end < m_text.size()) {
        const std::size_t blank = m_text.rfind(U' ', end);
        if (blank != m_text.npos && blank > 0) end = blank;
    }
    Label line(m_text.substr(0, end), m_size, m_weight);
    m_text.erase(0, std::min(m_text.find_first_not_of(U' ', end), m_text.size()));
    m_whole = m_text;
    m_width = WidthOf(m_text);
    return line;
}

bool Label::IsGuessed() const {
    return std::ranges::any_of(m_text,
                               [](char32_t c) { return !IsAscii(c) && (IsCombining(c) || ScriptOf(c).guessed); });
}

}  // namespace qv::charts
