#include "charts/Svg.h"

#include "charts/Characters.h"
#include "charts/Numbers.h"

namespace qv::charts {
namespace {

constexpr const char* kAnchors[] = {"", " text-anchor=\"middle\"", " text-anchor=\"end\""};

}  // namespace

Svg& Svg::operator<<(double value) {
    AppendCoordinate(m_out, value);
    return *this;
}

Svg& Svg::Escaped(std::u32string_view text) {
    AppendEscaped(m_out, text);
    return *this;
}

void Svg::Text(const Label& label, double x, double y, Anchor anchor, std::string_view classes, bool upright) {
    if (label.Text().empty()) return;
    *this << "<text";
    if (upright)
        *this << " transform=\"translate(" << x << ' ' << y << ")rotate(-90)\"";
    else
        *this << " x=\"" << x << "\" y=\"" << y << '"';
    *this << kAnchors[static_cast<int>(anchor)];
    if (!classes.empty()) *this << " class=\"" << classes << '"';
    if (label.IsGuessed()) *this << " textLength=\"" << label.Width() << "\" lengthAdjust=\"spacingAndGlyphs\"";
    *this << '>';
    if (label.IsShortened()) (*this << "<title>").Escaped(label.Whole()) << "</title>";
    Escaped(label.Text()) << "</text>\n";
}

void Svg::Line(double x1, double y1, double x2, double y2, std::string_view classes) {
    *this << "<path class=\"" << classes << "\" d=\"M" << x1 << ' ' << y1 << 'L' << x2 << ' ' << y2 << "\"/>\n";
}

void Svg::Rect(const Box& box, std::string_view classes) {
    *this << "<rect class=\"" << classes << "\" x=\"" << box.left << "\" y=\"" << box.top << "\" width=\""
          << box.Width() << "\" height=\"" << box.Height() << "\"/>\n";
}

void Svg::Path(std::string_view data, std::string_view classes, std::u32string_view hint) {
    if (data.empty()) return;
    *this << "<path class=\"" << classes << "\" d=\"" << data << '"';
    if (hint.empty())
        *this << "/>\n";
    else
        (*this << "><title>").Escaped(hint) << "</title></path>\n";
}

void Svg::Cell(const char* tag, std::string_view text) {
    (*this << '<' << tag << '>').Escaped(Characters(text)) << "</" << std::string_view(tag).substr(0, 2) << '>';
}

void Svg::HiddenTable(const std::u32string& caption, const Table& table) {
    *this << "<foreignObject class=\"hidden\" width=\"1\" height=\"1\"><table xmlns=\"http://www.w3.org/1999/xhtml\">";
    (*this << "<caption>").Escaped(caption) << "</caption>\n<thead><tr>";
    for (const CString& head : table.heads) Cell("th scope=\"col\"", head);
    *this << "</tr></thead>\n<tbody>";
    for (const auto& row : table.rows) {
        *this << "<tr>";
        for (std::size_t i = 0; i < row.size(); ++i) Cell(i ? "td" : "th scope=\"row\"", row[i]);
        *this << "</tr>\n";
    }
    *this << "</tbody></table></foreignObject>\n";
}

}  // namespace qv::charts
