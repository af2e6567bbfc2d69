#include <gtest/gtest.h>

#include <map>
#include <random>

#include "html/Glossary.h"
#include "html/GoldenBarsPage.h"
#include "html/GoldenPopupsPage.h"
#include "html/GoldenQuickMenuPage.h"
#include "html/GoldenSectionsPage.h"
#include "html/GoldenTreePage.h"
#include "qvcommon/HtmlAssets.h"
#include "qvcommon/HtmlTreeMenu.h"
#include "qvcommon/SortedHtmlWriter.h"
#include "tests/support/GlossaryRules.h"
#include "tests/support/GoldenPage.h"
#include "tests/support/Raised.h"
#include "tests/support/SamplePages.h"
#include "tests/support/ScopedCodePage.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Utf8Locale.h"

namespace {

// The nodes of a tree have new names in every run: here they get numbers.
std::string WithNumberedNodes(std::string page) {
    constexpr std::size_t length = 32;
    int count = 0;
    for (std::size_t at = 0; (at = page.find("node", at)) != page.npos; at += 4) {
        const std::string id = page.substr(at + 4, length);
        if (id.size() < length || id.find_first_not_of("0123456789ABCDEF") != id.npos) continue;
        const std::string number = std::to_string(count++);
        for (std::size_t place = at; (place = page.find(id, place)) != page.npos;) page.replace(place, length, number);
    }
    return page;
}

TEST(InteractivePages, MatchGoldenPages) {
    const std::map<std::string_view, std::string_view> golden{{"sections", qv::test::kGoldenSectionsPage},
                                                              {"popups", qv::test::kGoldenPopupsPage},
                                                              {"quickmenu", qv::test::kGoldenQuickMenuPage},
                                                              {"bars", qv::test::kGoldenBarsPage},
                                                              {"tree", qv::test::kGoldenTreePage}};
    std::size_t compared = 0;
    CHtmlWriter support;
    support.AddBrowserSupport();
    for (const Sample& sample : SamplePages()) {
        SamplePage plain(false), today(true);
        sample.Write(plain);
        sample.Write(today);
        CString html = today.GetHtml();
        EXPECT_EQ(html.Replace(support.GetHtml(), ""), 1);
        const std::string written = WithNumberedNodes(plain.GetHtml().AsStd());
        EXPECT_EQ(WithNumberedNodes(html.AsStd()), written) << sample.name;
        const auto expected = golden.find(sample.name);
        if (expected == golden.end()) continue;
        EXPECT_EQ(written, GoldenPage(expected->second)) << sample.name;
        ++compared;
    }
    EXPECT_EQ(compared, golden.size());
}

TEST(HtmlAssets, AreCopiedOnlyWhereTheyDiffer) {
    const TempFolder folder;
    CStringArray names;
    CHtmlAssets::GetNames(names);
    folder.Write("open.gif", std::string(CHtmlAssets::GetBytes("open.gif")) + "x");
    CHtmlAssets::CopyTo(folder / "");
    const auto whenWritten = std::filesystem::last_write_time(folder.Native("open.gif"));
    for (const CString& name : names) EXPECT_EQ(folder.Read(name.AsStd()), CHtmlAssets::GetBytes(name)) << name;
    EXPECT_EQ(CHtmlAssets::GetBytes("folder.gif").substr(0, 6), "GIF89a");
    EXPECT_TRUE(CHtmlAssets::GetBytes("none").empty());
    CHtmlAssets::CopyTo(folder / "");
    EXPECT_EQ(std::filesystem::last_write_time(folder.Native("open.gif")), whenWritten);
    EXPECT_TRUE(Raised<CFileException>([&] { CHtmlAssets::CopyTo(folder / "none"); }));
}

void CompareOnRandomTexts(const std::vector<std::string>& pieces) {
    std::mt19937 random(7);
    const auto text = [&](unsigned most) {
        std::string out;
        for (unsigned n = random() % most; n > 0; --n) out += pieces[random() % pieces.size()];
        return out;
    };
    int marked = 0;
    for (int round = 0; round < 3000; ++round) {
        const std::string subject = text(24);
        CStringArray terms, explanations;
        for (unsigned n = random() % 7; n > 0; --n) {
            terms.Add(text(4));
            explanations.Add(text(4));
        }
        const CString result = CHtmlWriter::GetGlossarizedText(subject, terms, explanations);
        ASSERT_EQ(result, qv::test::MarkTermByTerm(subject, terms, explanations)) << subject;
        marked += result.Find("<span") >= 0;
    }
    EXPECT_GT(marked, 400);
}

TEST(Glossary, MatchesReference) {
    const WesternCodePage western;
    CompareOnRandomTexts({"a", "A", "b", " ", "s", "es", "E", "-", "1", "\xE9", "<", "'", "\r\n", "ab", "a b"});
}

TEST(Glossary, MatchesReferenceInUtf8) {
    const Utf8Locale locale;
    if (!locale) GTEST_SKIP() << "no UTF-8 locale";
    CompareOnRandomTexts({"a", "A", "\xC3\xA9", "\xC3\x89", " ", "s", "\xE9", "\xC3", "\xE2\x82\xAC", "b-"});
}

TEST(Glossary, KeepsFewOfManyCompetingTerms) {
    const CString text('-', 1000);
    CStringArray terms;
    for (int i = 0; i < 40; ++i) terms.Add(CString('-', 1 + (i * 7 + 5) % 40));
    EXPECT_EQ(CHtmlWriter::GetGlossarizedText(text, terms, terms), qv::test::MarkTermByTerm(text, terms, terms));
    EXPECT_LT(qv::html::FindTerms(text, terms).capacity(), 8000u);  // of 40000 occurrences
}

TEST(Glossary, KnowsWholeWords) {
    const WesternCodePage western;
    using Row = std::tuple<const char*, int, int, int>;
    for (const auto& [text, start, length, whole] :
         {Row{"cat", 0, 3, 1}, Row{"cats", 0, 3, 1}, Row{"boxEs.", 0, 3, 1}, Row{"category", 0, 3, 0},
          Row{"concat", 3, 3, 0}, Row{"catss", 0, 3, 0}, Row{"cates", 0, 3, 1}, Row{"cate", 0, 3, 0},
          Row{"1cat", 1, 3, 0}, Row{"-cat_", 1, 3, 1}, Row{"cat\xE9", 0, 3, 0}, Row{"\xE9 cat", 2, 3, 1}})
        EXPECT_EQ(qv::test::WholeWord::IsWholeWord(text, start, length), whole) << text;
    EXPECT_TRUE(Raised<CInvalidArgException>([] { CHtmlWriter::GetGlossarizedText("a", {"a"}, {}); }));
}

struct Shouting : CHtmlTreeNode {
    using CHtmlTreeNode::CHtmlTreeNode;
    CString GetHtml(const char* parentId) override { return "[" + CHtmlTreeNode::GetHtml(parentId) + "]"; }
    int IsSelected() override {
        ++asked;
        return 1;
    }
    int asked = 0;
};

TEST(TreeMenu, UsesOverriddenMembers) {
    CHtmlTreeBuilder tree;
    EXPECT_EQ(WithNumberedNodes(tree.GetHtml().AsStd()),
              "<script language=\"javascript\" type=\"text/javascript\">\nnode0 = new TreeMenu('','node0', '_self', "
              "'treeMenuDefault', true, false);\nnode0.drawMenu();\nnode0.resetBranches();\n</script>");
    CHtmlTreeNode* parent = &tree;
    for (int depth = 0; depth < 1000; ++depth) parent = parent->AddNode(new CHtmlTreeNode("x", "i", "", 0));
    auto* const last = static_cast<Shouting*>(parent->AddNode(new Shouting("y", "i", "", 0)));
    const CString html = tree.GetHtml();
    EXPECT_NE(html.Find("[node"), -1);
    EXPECT_EQ(html.Find("'', false, true"), -1);
    EXPECT_LE(last->asked, 3);
    EXPECT_EQ(tree.HasSelected(), 1);
}

TEST(SortedWriter, WritesSectionsInOrder) {
    CSortedHtmlWriter sections;
    int created = 0;
    CHtmlWriter& b = sections.GetWriter("b", created);
    EXPECT_EQ(created, 1);
    b.AddText("B<");
    EXPECT_EQ(&sections.GetWriter("b", created), &b);
    EXPECT_EQ(created, 0);
    sections.GetWriter("a").AddText("A");
    sections.SetHeader("b", "{");
    sections.SetFooter("b", "}");
    sections.SetHeader("none", "never");
    sections.SetGlobalHeader("(");
    sections.SetGlobalFooter(")");
    for (const char* const expected : {"(A)({B&lt;})", "(A)({B&lt;})(C)"}) {
        CHtmlWriter out;
        sections.GetHtml(out);
        EXPECT_EQ(out.GetHtml(), expected);
        sections.GetWriter("c", created).Empty();
        sections.GetWriter("c").AddText("C");
        EXPECT_EQ(&sections.GetWriter("b"), &b);
    }
    sections.RemoveAll();
    sections.GetWriter("b", created);
    EXPECT_EQ(created, 1);
    CHtmlWriter out;
    sections.GetHtml(out);
    EXPECT_EQ(out.GetHtml(), "({})");
}

}  // namespace
