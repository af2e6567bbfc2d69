#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <regex>

#include "charts/Folding.h"
#include "charts/Label.h"
#include "charts/Thinning.h"
#include "qvcommon/StringHelper.h"
#include "tests/support/Raised.h"
#include "tests/support/SampleCharts.h"
#include "tests/support/ScopedLocale.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Tool.h"

namespace {

using namespace qv::charts;

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// The places of a picture's texts, by its own numbers and the table of widths.
struct DrawnText {
    std::string text;
    Box box;
};

std::string Decoded(const std::string& text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size();) {
        const bool isReference = text.compare(i, 2, "&#") == 0;
        decoded += isReference ? '?' : text[i];
        i = isReference ? text.find(';', i) + 1 : i + 1;
    }
    return decoded;
}

std::vector<DrawnText> TextsOf(const std::string& svg) {
    static const std::regex kText(
        "<text(?: x=\"([-.0-9]+)\" y=\"([-.0-9]+)\"| transform=\"translate\\(([-.0-9]+) ([-.0-9]+)\\)rotate\\(-90\\)\")"
        "(?: text-anchor=\"(\\w+)\")?(?: class=\"(\\w+)\")?(?: textLength=\"([.0-9]+)\"[^>]*)?>"
        "(?:<title>[^<]*</title>)?([^<]*)</text>");
    std::vector<DrawnText> texts;
    for (std::sregex_iterator i(svg.begin(), svg.end(), kText), end; i != end; ++i) {
        const std::smatch& m = *i;
        const bool upright = m[3].matched, title = m[6] == "title", bold = title || m[6] == "subtitle";
        const double size = title ? 17 : m[6] == "subtitle" ? 13 : 12;
        const Label label(Decoded(m[8]), size, bold ? Label::Weight::Bold : Label::Weight::Normal);
        const double width = m[7].matched ? std::stod(m[7]) : label.Width();
        const double x = std::stod(upright ? m[3] : m[1]), y = std::stod(upright ? m[4] : m[2]);
        const double before = m[5] == "end" ? width : m[5] == "middle" ? width / 2 : 0;
        const double up = size * 0.8, down = size * 0.2;
        const Box box = upright ? Box{x - up, y - width + before, x + down, y + before}
                                : Box{x - before, y - up, x - before + width, y + down};
        texts.push_back({m[8], box});
    }
    return texts;
}

Box PictureOf(const std::string& svg) {
    std::smatch size;
    std::regex_search(svg, size, std::regex("viewBox=\"0 0 (\\d+) (\\d+)\""));
    return {0, 0, std::stod(size[1]), std::stod(size[2])};
}

TEST(Graph, LabelsStayInsideWithoutOverlap) {
    for (const auto& [width, height] : {std::pair(720, 400), {320, 280}, {160, 120}, {720, 150}, {1500, 300}})
        for (const SampleChart& chart : SampleCharts(width, height)) {
            const Box picture = PictureOf(chart.svg);
            const std::vector<DrawnText> texts = TextsOf(chart.svg);
            EXPECT_EQ(static_cast<int>(texts.size()), CStringHelper::CountOf(chart.svg, "<text ")) << chart.name;
            for (std::size_t i = 0; i < texts.size(); ++i) {
                const Box& box = texts[i].box;
                EXPECT_TRUE(box.left >= -0.5 && box.right <= picture.right + 0.5 && box.top >= 0 &&
                            box.bottom <= picture.bottom)
                    << chart.name << ' ' << width << ": " << texts[i].text;
                for (std::size_t j = 0; j < i; ++j)
                    EXPECT_FALSE(box.Meets(texts[j].box))
                        << chart.name << ' ' << width << ": " << texts[j].text << " and " << texts[i].text;
            }
        }
}

// A parser of others reads each as XML; no text becomes markup.
TEST(Graph, SvgIsWellFormedWithoutScripts) {
    const TempFolder folder;
    CStringArray arguments{
        "-c",
        "import sys,xml.dom.minidom as m\n"
        "for f in sys.argv[1:]:\n"
        "  d=m.parse(f)\n"
        "  assert not d.getElementsByTagName('script')\n"
        "  assert len(d.getElementsByTagName('svg'))==1\n"
        "  assert not [a for e in d.getElementsByTagName('*') for a in e.attributes.keys() if a[:2]=='on']\n"
        "print('read')"};
    for (const SampleChart& chart : SampleCharts(720, 400)) {
        const CString path = folder / (chart.name + ".svg").c_str();
        CFileUtils::SaveFile(path, chart.svg);
        arguments.Add(CFileUtils::GetNativePath(path));
        EXPECT_EQ(std::ranges::count_if(chart.svg, [](char c) { return static_cast<signed char>(c) < '\n'; }), 0);
    }
    ToolAnswer answer;
    if (Raised<CException>([&] { answer = RunProgram("python3", arguments); })) GTEST_SKIP() << "no python3";
    EXPECT_EQ(answer.output.substr(0, 4), "read");
}

TEST(Graph, AxesHaveTicksAndTitles) {
    const auto drawn = [](CAxisGraph& graph) {
        graph.SetAxisTitles("age", "kg");
        std::vector<std::string> texts;
        for (const DrawnText& each : TextsOf(graph.GetSvg().AsStd())) texts.push_back(each.text);
        return texts;
    };
    CBarGraph bars;
    bars.SetCategories({"10"});
    bars.AddSeries("", {40});
    CAreaGraph area;
    area.AddSeries("", {0, 10}, {0, 40});
    CScatterGraph points;
    points.AddSeries("", {0, 10}, {0, 40});
    for (CAxisGraph* const graph : std::initializer_list<CAxisGraph*>{&bars, &area, &points})
        EXPECT_THAT(drawn(*graph), testing::IsSupersetOf({"age", "kg", "0", "10", "40"}));
}

// The table for screen readers: a line for each row, "|" between the cells.
std::string TableOf(const CGraph& graph) {
    const std::string svg = graph.GetSvg().AsStd();
    const std::size_t start = svg.find("<thead>"), end = svg.find("</table>");
    const std::string rows =
        std::regex_replace(svg.substr(start, end - start), std::regex("</t[hd]><t[hd][^>]*>"), "|");
    return std::regex_replace(rows, std::regex("<[^>]*>"), "");
}

TEST(Graph, TablesHaveTheValues) {
    CBarGraph bars;
    bars.SetCategories({"one"});
    bars.AddSeries("a", {2, kNone});
    bars.AddSeries("b", {3, -6});
    EXPECT_EQ(TableOf(bars), "Category|a|b\none|2|3\n2||-6\n");

    CAreaGraph area;
    area.SetAxisTitles("", "kg");
    area.AddSeries("plain", {7});
    EXPECT_EQ(TableOf(area), "Series|x|kg\nplain|1|7\n");
    area.SetCategories({"one"});
    area.AddSeries("at", {10, 20}, {1, kNone});
    EXPECT_EQ(TableOf(area), "Series|x|kg\nplain|one|7\nat|10|1\nat|20|\n");
    area.AddSeries("dated", {{COleDateTime(2025, 5, 4, 0, 0, 0)}}, {2});
    EXPECT_THAT(TableOf(area), testing::EndsWith("dated|2025-05-04|2\n"));
    area.AddSeries("many", std::vector<double>(98, 5));
    EXPECT_EQ(TableOf(area), "Series|Values|Minimum|Maximum\nplain|1|7|7\nat|1|1|1\ndated|1|2|2\nmany|98|5|5\n");
}

TEST(Graph, ChartsOfMissingValuesHaveNoData) {
    CBarGraph bars;
    bars.SetLogarithmic(true);
    bars.AddSeries("", {0, -1});
    CScatterGraph points;
    points.SetLogarithmicX(true);
    points.AddSeries("", {-1, 0, kNone}, {1, 2, 3});
    CAreaGraph area;
    area.AddSeries("", {{COleDateTime(2025, 2, 30, 0, 0, 0)}}, {2});
    for (const CGraph* const graph : std::initializer_list<const CGraph*>{&bars, &points, &area})
        EXPECT_GE(graph->GetSvg().Find("No data"), 0);
    for (int i = 0; i < 3; ++i) points.AddSeries("", std::vector<double>(301, 1));
    const CString svg = points.GetSvg();
    EXPECT_LT(svg.Find("No data"), 0);
    const ScopedLocale german(GermanLocale());
    EXPECT_EQ(points.GetSvg(), svg) << "bytes do not depend on the locale";
}

TEST(Graph, ThinningKeepsPeaksAndGaps) {
    // By columns of a pixel: five points of which four stay, a gap that is seen, one that is not.
    const std::vector<Point> points = {{0.1, 5},     {0.2, 9}, {0.3, 1},     {0.4, 4}, {0.5, 6},
                                       {1.5, kNone}, {2.1, 3}, {2.2, kNone}, {2.3, 2}};
    const Runs expected = {{{0.1, 5}, {0.2, 9}, {0.3, 1}, {0.5, 6}}, {{2.1, 3}, {2.3, 2}}};
    EXPECT_EQ(ThinLine(points.size(), [&](std::size_t i) { return points[i]; }), expected);

    std::vector<Point> many;
    for (int i = 0; i < 100000; ++i) many.push_back({i % 500 / 5.0, 20 + i % 7 / 10.0});
    many[77777].y = 0.5;
    many[44444].y = 39.5;
    const std::vector<Point> kept = ThinPoints(many, 100, 40);
    EXPECT_LT(kept.size(), 400u);
    for (const std::size_t peak : {77777u, 44444u}) EXPECT_NE(std::ranges::find(kept, many[peak]), kept.end()) << peak;
}

TEST(Graph, FoldsSmallestPreservingOrder) {
    const double weights[] = {3, 1, 4, 1, 5, 9, 2, 6};
    const Folding folding = Fold(std::size(weights), 4, [&](std::size_t i) { return weights[i]; });
    EXPECT_EQ(folding.kept, (std::vector<std::size_t>{4, 5, 7}));
    EXPECT_EQ(folding.folded, 5u);

    CPieGraph pie;
    pie.SetMostSlices(3);
    pie.AddSeries("", std::vector<double>(10, 1e308));
    EXPECT_GE(pie.GetSvg().Find(">80.0%<"), 0) << "the sum of the others exceeds all doubles";
    CBarGraph bars;
    bars.AddSeries("", std::vector<double>(1000000, 1));
    const CString svg = bars.GetSvg();
    EXPECT_LT(svg.GetLength(), 100000);
    EXPECT_GE(svg.Find("Others (9997"), 0);
}

TEST(Graph, RejectsInvalidCharts) {
    CBarGraph bars;
    bars.SetStacked(true);
    bars.SetLogarithmic(true);
    bars.AddSeries("", {-1});
    CAreaGraph areas;
    areas.SetStacked(true);
    areas.AddSeries("", {1, 2}, {1, 2});
    areas.AddSeries("", {1, 3}, {1, 2});
    CPieGraph full;
    for (int i = 0; i < 48; ++i) full.AddSeries("", {1});
    CGraphManager crowd;
    for (int i = 0; i < 30; ++i) crowd.Add(full);
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { bars.GetSvg(); }));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { areas.GetSvg(); }));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { crowd.GetSvg(); }));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { full.AddSeries("", {1}); }));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { areas.AddSeries("", {1}, {1, 2}); }));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { bars.SetSize(159, 400); }));
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { full.SetMostSlices(1); }));
    for (const char* const id : {"", "1a", "a b", "a\"", static_cast<const char*>(nullptr)})
        EXPECT_TRUE(Raised<CInvalidArgException>([&] { bars.SetId(id); }));
}

}  // namespace
