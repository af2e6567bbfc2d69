#include "charts/Picture.h"

#include <algorithm>

#include "charts/Characters.h"
#include "platform/Ascii.h"
#include "qvcommon/framework/Exception.h"

namespace qv::charts {
namespace {

constexpr double kHeadingSize = 17, kTextSize = 12;

void AppendNames(Svg& svg, const Caption& caption) {
    const std::string& id = svg.Id();
    svg << "<g role=\"img\" aria-labelledby=\"" << id << "-t\" aria-describedby=\"" << id << "-d\">\n<title id=\"" << id
        << "-t\">";
    svg.Escaped(Characters(caption.name)) << "</title>\n<desc id=\"" << id << "-d\">";
    svg.Escaped(Characters(caption.description)) << "</desc>\n";
}

}  // namespace

Box BeginPicture(Svg& svg, const Caption& caption, std::size_t keys) {
    svg << "<svg xmlns=\"http://www.w3.org/2000/svg\" id=\"" << svg.Id() << "\" width=\"" << caption.width
        << "\" height=\"" << caption.height << "\" viewBox=\"0 0 " << caption.width << ' ' << caption.height << "\">\n";
    AppendStyleSheet(svg, keys);
    AppendNames(svg, caption);
    const Box all{0, 0, static_cast<double>(caption.width), static_cast<double>(caption.height)};
    svg.Rect(all, "back");
    const Box body{kMargin, kMargin, all.right - kMargin, all.bottom - kMargin};
    return DrawHeading(svg, body, Label(caption.title, kHeadingSize, Label::Weight::Bold), "title");
}

void EndDrawing(Svg& svg) {
    svg << "</g>\n";
}

void EndPicture(Svg& svg) {
    svg << "</svg>\n";
}

Box DrawHeading(Svg& svg, const Box& box, const Label& heading, std::string_view classes) {
    Label rest = heading;
    double y = box.top;
    if (rest.Width() > box.Width() && box.Height() > 200) {
        const Label line = rest.TakeLine(box.Width());
        svg.Text(line, box.left, y + heading.Size(), Anchor::Start, classes);
        y += LineHeight(heading.Size());
    }
    rest.ShortenTo(box.Width());
    svg.Text(rest, box.left, y + heading.Size(), Anchor::Start, classes);
    if (!rest.Text().empty()) y += LineHeight(heading.Size());
    return {box.left, y > box.top ? y + 8 : y, box.right, box.bottom};
}

void DrawNoData(Svg& svg, const Box& box) {
    Label label(U"No data", kTextSize);
    label.ShortenTo(box.Width());
    svg.Text(label, box.Middle(), (box.top + box.bottom) / 2, Anchor::Middle, "");
}

void CheckSize(int width, int height) {
    if (width < 160 || width > 4000 || height < 120 || height > 4000) AfxThrowInvalidArgException();
}

void CheckId(std::string_view id) {
    const auto fits = [](char c) { return ascii::IsLetterOrDigit(c) || c == '-' || c == '_'; };
    if (id.empty() || !ascii::IsLetter(id[0]) || !std::ranges::all_of(id, fits)) AfxThrowInvalidArgException();
}

}  // namespace qv::charts
