#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

#include "qvcommon/XmlHelper.h"
#include "tests/support/ScopedLocale.h"

namespace {

using Element = const CXmlHelper::Element&;

TEST(XmlOrder, PrunesAndSorts) {
    const CXmlHelper::Element empty =
        CXmlHelper::GetDocumentElement("<r><a><b> </b></a><c k=''/><d>x</d><e><!--n--></e></r>");
    EXPECT_EQ(CXmlHelper::DeleteEmptyElements(empty, ""), 3);
    EXPECT_EQ(empty.get_xml(), "<r><c k=\"\"/><d>x</d></r>");
    EXPECT_EQ(CXmlHelper::DeleteIfEmpty(CXmlHelper::GetDocumentElement("<r/>")), 0);
    const auto sorted = [](const std::function<void(Element)>& sort) {
        const CXmlHelper::Element root =
            CXmlHelper::GetDocumentElement("<r>t<i k='b'>1</i><j k='a'>2</j><!--c--><i k='c'>1</i><i>0</i></r>");
        sort(root);
        return root.get_xml();
    };
    EXPECT_EQ(sorted([](Element r) { CXmlHelper::Sort(r, "@k", 0); }),
              "<r>t<i>0</i><j k=\"a\">2</j><!--c--><i k=\"b\">1</i><i k=\"c\">1</i></r>");
    EXPECT_EQ(sorted([](Element r) {
                  CXmlHelper::Sort(r, CStringArray{".", "@k"}, 1);
              }),
              "<r>t<j k=\"a\">2</j><i k=\"c\">1</i><!--c--><i k=\"b\">1</i><i>0</i></r>");
    EXPECT_EQ(sorted([](Element r) { CXmlHelper::Sort(r, CStringArray{"."}, "i", 0); }),
              "<r>t<i>0</i><j k=\"a\">2</j><!--c--><i k=\"b\">1</i><i k=\"c\">1</i></r>");
    EXPECT_EQ(sorted([](Element r) { CXmlHelper::SortSection(r, ".", 2, -1, 0); }),
              "<r>t<i k=\"b\">1</i><j k=\"a\">2</j><!--c--><i>0</i><i k=\"c\">1</i></r>");
}

// With these texts some collations order the keys differently from the texts.
TEST(XmlOrder, MatchesCollation) {
    for (const char* const locale : {"C", GermanLocale(), "en_US.UTF-8"}) {
        const ScopedLocale scope(locale);
        std::mt19937 random(5);
        std::vector<std::pair<CString, CString>> texts;
        CString xml;
        for (int i = 0; i < 150; ++i) {
            CString text("x");
            for (std::size_t length = random() % 9; length--;) text += "aAbB-'.2"[random() % 8];
            texts.emplace_back(text, std::to_string(i));
            xml += "<v n=\"" + std::to_string(i) + "\">" + text + "</v>";
        }
        std::stable_sort(texts.begin(), texts.end(),
                         [](const auto& a, const auto& b) { return a.first.Collate(b.first) < 0; });
        CString sorted;
        for (const auto& [text, number] : texts) sorted += "<v n=\"" + number + "\">" + text + "</v>";
        const CXmlHelper::Element root = CXmlHelper::GetDocumentElement("<r>" + xml + "</r>");
        CXmlHelper::Sort(root, CStringArray{".", "@none"}, 0);
        EXPECT_EQ(CXmlHelper::GetInnerXml(root), sorted) << locale;
    }
}

}  // namespace
