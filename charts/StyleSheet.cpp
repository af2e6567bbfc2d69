#include <algorithm>
#include <array>

#include "charts/Keys.h"

namespace qv::charts {
namespace {

// Any two differ by at least 15 (light) or 22 (dark) in CIELAB for each kind of colour vision, and each has a contrast
// of at least 3:1 against the background.
constexpr std::array<std::array<const char*, kColours>, 2> kColourOf = {
    {{"#3f93ee", "#c06a14", "#00a061", "#55428f", "#a82340", "#405c82", "#8d4f00", "#7e003c"},
     {"#a8d1ef", "#ec9000", "#0fe3bd", "#6585f1", "#ab4a34", "#888777", "#dfc96b", "#a249a3"}}};

struct Ink {
    const char *background, *title, *text, *grid, *axis, *hatch;
};
constexpr Ink kInks[] = {{"#fff", "#16181d", "#43474f", "#e4e6ea", "#7b818c", "#fff"},
                         {"#17191d", "#f2f3f5", "#c3c7ce", "#33373e", "#8b919c", "#17191d"}};

constexpr const char* kDashes[] = {"none", "7 3", "2 3", "9 3 2 3", "4 4", "12 4"};

constexpr const char* kHatches[kPatterns] = {"",
                                             " patternTransform=\"rotate(45)\"><path class=\"hatch\" d=\"M3 0V6\"/>",
                                             "><path class=\"hatch dot\" d=\"M1.5 1.5h0M4.5 4.5h0\"/>",
                                             " patternTransform=\"rotate(-45)\"><path class=\"hatch\" d=\"M3 0V6\"/>",
                                             "><path class=\"hatch\" d=\"M0 3H6\"/>",
                                             "><path class=\"hatch\" d=\"M3 0V6M0 3H6\"/>"};

// Rules begin with the picture's id, so they affect nothing else on the page and override the page's own.
class Rules {
public:
    explicit Rules(Svg& svg) : m_svg(svg) {}

    Rules& Add(std::string_view selector, std::string_view declarations) {
        m_svg << '#' << m_svg.Id() << selector << '{' << declarations << "}\n";
        return *this;
    }

    void AddInk(const Ink& ink, const std::array<const char*, kColours>& colours, std::size_t keys) {
        Add(" .back", std::string("fill:") + ink.background);
        Add(" text", std::string("fill:") + ink.text);
        Add(" .title", std::string("fill:") + ink.title);
        Add(" .grid", std::string("stroke:") + ink.grid);
        Add(" .axis", std::string("stroke:") + ink.axis);
        Add(" .hatch", std::string("stroke:") + ink.hatch);
        Add(" .slice", std::string("stroke:") + ink.background);
        for (std::size_t i = 0; i < std::min<std::size_t>(keys, kColours); ++i) {
            const std::string number = std::to_string(i);
            Add(" .f" + number, std::string("fill:") + colours[i]);
            Add(" .l" + number, std::string("stroke:") + colours[i]);
        }
    }

private:
    Svg& m_svg;
};

void AddShapes(Rules& rules, std::string_view id, std::size_t keys) {
    rules.Add("", "max-width:100%;height:auto")
        .Add(" text",
             "font:12px Arial,Helvetica,\"Liberation Sans\",\"DejaVu Sans\",sans-serif;"
             "letter-spacing:0;word-spacing:0;font-variant-numeric:tabular-nums")
        .Add(" .title", "font-size:17px;font-weight:bold")
        .Add(" .subtitle", "font-size:13px;font-weight:bold")
        .Add(" .grid", "fill:none;stroke-width:1;shape-rendering:crispEdges")
        .Add(" .axis", "fill:none;stroke-width:1;shape-rendering:crispEdges")
        .Add(" .line", "fill:none;stroke-width:2;stroke-linejoin:round;stroke-linecap:round")
        .Add(" .fine", "stroke-width:1")
        .Add(" .area", "fill-opacity:.15")
        .Add(" .round", "fill:none;stroke-linecap:round")
        .Add(" .square", "fill:none;stroke-linecap:square")
        .Add(" .hatch", "fill:none;stroke-width:1.4;stroke-opacity:.55")
        .Add(" .dot", "stroke-width:2;stroke-linecap:round")
        .Add(" .slice", "fill:none;stroke-width:1.5;stroke-linejoin:round;pointer-events:none")
        .Add(" .hidden", "overflow:hidden;opacity:0");
    for (std::size_t i = 0; i < std::min<std::size_t>(keys, kPatterns); ++i) {
        const std::string number = std::to_string(i);
        if (i > 0) rules.Add(" .p" + number, "fill:url(#" + std::string(id) + "-p" + number + ");pointer-events:none");
        rules.Add(" .d" + number, std::string("stroke-dasharray:") + kDashes[i]);
    }
}

}  // namespace

void AppendStyleSheet(Svg& svg, std::size_t keys) {
    svg << "<style>\n";
    Rules rules(svg);
    AddShapes(rules, svg.Id(), keys);
    rules.AddInk(kInks[0], kColourOf[0], keys);
    svg << "@media (prefers-color-scheme:dark){\n";
    rules.AddInk(kInks[1], kColourOf[1], keys);
    svg << "}\n</style>\n<defs>\n";
    for (std::size_t i = 1; i < std::min<std::size_t>(keys, kPatterns); ++i)
        svg << "<pattern id=\"" << svg.Id() << "-p" << std::to_string(i)
            << "\" width=\"6\" height=\"6\" patternUnits=\"userSpaceOnUse\"" << kHatches[i] << "</pattern>\n";
    svg << "</defs>\n";
}

}  // namespace qv::charts
