#include "qvcommon/HtmlWriter.h"

#include <gtest/gtest.h>

#include "html/GoldenPage.h"
#include "qvcommon/MultiUserFile.h"
#include "tests/support/Raised.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr auto kNone = CHtmlWriter::alignNone, kLeft = CHtmlWriter::alignLeft, kCenter = CHtmlWriter::alignCenter,
               kRight = CHtmlWriter::alignRight, kOdd = static_cast<CHtmlWriter::enumAlign>(7);

TEST(HtmlWriter, WritesEachElementInItsExactForm) {
    const struct {
        void (*write)(CHtmlWriter& page);
        const char* html;
    } cases[] = {
        {[](CHtmlWriter& p) {
             p.OpenTag("b", "");
             p.AddText("<");
             p.CloseTag("b");
         },
         "<b>&lt;</b>"},
        {[](CHtmlWriter& p) { p.AddHeading(2, "A<B", kCenter); }, "<h2 ALIGN=CENTER>A&lt;B</h2>"},
        {[](CHtmlWriter& p) {
             p.AddHeading(1, "x");
             p.AddHeading(3, "y", "id=1");
         },
         "<h1>x</h1><h3 id=1>y</h3>"},
        {[](CHtmlWriter& p) { p.AddHeading(2, "A<B", kOdd); }, "A&lt;B</h2>"},
        {[](CHtmlWriter& p) { p.AddParagraph("x"); }, "<P>x</P>"},
        {[](CHtmlWriter& p) { p.AddParagraph("x", kRight, "class=\"a\""); }, "<P class=\"a\" ALIGN=RIGHT>x</P>"},
        {[](CHtmlWriter& p) {
             p.AddParagraph("x", kLeft);
             p.AddParagraph("y", kOdd);
         },
         "<P  ALIGN=LEFT>x</P><P>y</P>"},
        {[](CHtmlWriter& p) { p.AddBlankParagraph(); }, "<P>&nbsp;</P>"},
        {[](CHtmlWriter& p) { p.AddPreformattedParagraph("a\r\nb", "c"); }, "<pre c>a<br>b</pre>"},
        {[](CHtmlWriter& p) { p.AddCode("\tif(a<b)"); }, "<code>&nbsp;&nbsp;&nbsp;&nbsp;if(a&lt;b)</code>"},
        {[](CHtmlWriter& p) {
             p.OpenNumberList("start=3");
             p.AddLine("<b>");
             p.CloseNumberList();
         },
         "<ol start=3><li><b></li></ol>"},
        {[](CHtmlWriter& p) {
             p.OpenBulletList();
             p.AddLine("x", "y");
             p.CloseBulletList();
         },
         "<ul><li y>x</li></ul>"},
        {[](CHtmlWriter& p) { p.AddImage("a.gif", kNone, "", 0, 0, ""); }, "<img border=\"0\" src=\"a.gif\"   >"},
        {[](CHtmlWriter& p) { p.AddImage("a&.gif", kLeft, "\"<", 3, 0, "x"); },
         "<img border=\"0\" src=\"a&.gif\" ALIGN=LEFT alt=\"&quot;&lt;\" x>"},
        {[](CHtmlWriter& p) { p.AddUppercaseImage("a", kOdd, nullptr, 3, 4); },
         "<img border=\"0\" src=\"a\"   WIDTH=\"3\" HEIGHT=\"4\" >"},
        {[](CHtmlWriter& p) {
             p.OpenHotlink("a?b&c");
             p.CloseHotlink();
         },
         "<A href=\"a?b&c\"></A>"},
        {[](CHtmlWriter& p) {
             p.OpenBookmark("n");
             p.CloseBookmark();
             p.OpenBookmark("n", "p");
         },
         "<A href=\"#n\"></A><A href=\"p#n\">"},
        {[](CHtmlWriter& p) { p.AddBookmark("n<"); }, "<A Name=\"n<\"></A>"},
        {[](CHtmlWriter& p) {
             p.OpenForm("go", "do");
             p.AddHiddenField("n", 0);
             p.CloseForm();
         },
         "<form method=\"POST\" action=\"go\"><input type=\"HIDDEN\" name=\"MfcISAPICommand\" value=\"do\">"
         "<input type=\"HIDDEN\" name=\"n\" value=\"0\"></form>"},
        {[](CHtmlWriter& p) {
             p.AddSingleLineTextField("n", 10);
             p.AddSingleLineTextField("m", 5, -2);
         },
         "<input type type=\"text\" name=\"n\" size=\"10\"><input type type=\"text\" name=\"m\" size=\"5\" "
         "value=\"-2\">"},
        {[](CHtmlWriter& p) { p.AddSingleLineTextField("n", 1, ""); },
         "<input type type=\"text\" name=\"n\" size=\"1\" value=\"\">"},
        {[](CHtmlWriter& p) { p.AddTitle("A&B", "css\\a.css", "base target=x"); },
         "<head><Title>A&amp;B</Title><link rel=\"stylesheet\" type=\"text/css\" href=\"css/a.css\"><base "
         "target=x></head>"},
    };
    for (const auto& c : cases) {
        CHtmlWriter page;
        c.write(page);
        EXPECT_EQ(page.GetHtml(), c.html);
    }
}

void WriteGoldenPage(CHtmlWriter& page) {
    page.OpenTag("html");
    page.AddTitle("Sales & more", nullptr, nullptr, "img\\{imageDirectory}");
    page.OpenTag("body");
    page.AddHeading(1, "Sales", kCenter);
    page.AddParagraph("5 < 6", kNone, "class=\"a\"");
    page.CloseTag("body");
    page.CloseTag("html");
}

TEST(HtmlWriter, WritesTheSamePageToMemoryAndToAFile) {
    CHtmlWriter inMemory;
    WriteGoldenPage(inMemory);
    EXPECT_EQ(inMemory.GetHtml(), qv::test::kGoldenPage);

    const TempFolder folder;
    CHtmlWriter page;
    page.AddText("stays in memory");
    page.SetFilename(folder / "page.html");
    EXPECT_FALSE(folder.Has("page.html"));
    WriteGoldenPage(page);
    EXPECT_EQ(page.GetHtml(), "stays in memory");
    page.CommitFile();
    page.CommitFile();

    CHtmlWriter read;
    ASSERT_EQ(read.AddHtmlFile(folder / "page.html"), 1);
    EXPECT_EQ(read.GetHtml(), "<h1 ALIGN=CENTER>Sales</h1><P class=\"a\">5 &lt; 6</P>");
    EXPECT_EQ(CHtmlWriter::GetFileBodyWords(folder / "page.html"), " Sales  5 < 6 ");

    page.AddText("anew");
    page.CommitFile();
    EXPECT_EQ(folder.Read("page.html"), "anew");
}

class OwnHead : public CHtmlWriter {
public:
    void AddTitleToHead(const char* title, const char*, const char*, const char*) override { AddHeading(1, title); }
    void CloseHotlink() override { AddFormattedText("</a>\n"); }
};

TEST(HtmlWriter, DerivedClassesChangeTheHead) {
    OwnHead page;
    page.AddTitle("T");
    EXPECT_EQ(page.GetHtml(), "<head><h1>T</h1></head>");
    EXPECT_STREQ(page.GetRuntimeClass()->m_lpszClassName, "CHtmlWriter");
}

TEST(HtmlWriter, CopiesTakeTheTextOnly) {
    const TempFolder folder;
    CHtmlWriter a, b;
    a.AddText("a");
    a.SetDropdowns(1, "img");
    a.SetFilename(folder / "a");
    a.AddText("in the file");
    const CHtmlWriter copy(a);
    EXPECT_EQ(copy.GetHtml(), "a");
    EXPECT_EQ(copy.GetFilename(), "");
    EXPECT_EQ(copy.GetDropdowns(), 0);

    b.AddText("b");
    EXPECT_EQ((a + b).GetHtml(), "ab");
    a += b;
    a.CommitFile();
    EXPECT_EQ(folder.Read("a"), "in the fileb");
    a.AddText("x");
    a = b;
    EXPECT_EQ(a.GetFilename(), "");
    a += a;
    EXPECT_EQ(a.GetHtml(), "bb");
    EXPECT_STREQ(a, "bb");
    a.Empty();
    EXPECT_TRUE(a.IsEmpty());
}

TEST(HtmlWriter, GrowsInLargeSteps) {
    CHtmlWriter page;
    std::string expected;
    std::size_t capacity = 0;
    int raised = 0;
    while (expected.size() < 5000000) {
        // Now and then the text itself, which moves while it is being appended.
        const CString piece = expected.size() % 7 ? CString('x', 997) : page.GetHtml().Left(500) + "y";
        expected += piece.AsStd();
        page.AddFormattedText(piece);
        const std::size_t now = page.GetHtml().AsStd().capacity();
        if (capacity > 10000 && now != capacity) {
            EXPECT_GE(now, capacity + 1000000);
            ++raised;
        }
        capacity = now;
    }
    EXPECT_GE(raised, 1);
    page.AddFormattedText(page.GetHtml());
    page += page;
    EXPECT_EQ(page.GetHtml().AsStd(), expected + expected + expected + expected);
}

TEST(HtmlWriter, FilesThatCannotBeOpened) {
    const TempFolder folder;
    CHtmlWriter page;
    page.SetFilename(folder / "none\\page.html");
    for (int i = 0; i < 2; ++i) {
        const auto error = Raised<CFileException>([&] { page.AddText("x"); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->m_cause, CFileException::badPath);
        EXPECT_TRUE(error->m_strFileName.AsStd().ends_with("page.html"));
    }
    CHtmlWriter other;
    EXPECT_EQ(other.AddHtmlFile(folder / "none"), 0);
    EXPECT_EQ(other.AddHtmlFile(folder / ""), 0);
    EXPECT_TRUE(other.IsEmpty());
    EXPECT_EQ(CHtmlWriter::GetFileBodyWords(folder / "none"), "");
}

TEST(HtmlWriter, AFullDiskShowsAtTheLatestWhenThePageIsCommitted) {
    const TempFolder folder;
    CHtmlWriter page;
    page.SetFilename(folder / "page.html");
    {
        const SystemFaults faults(
            SystemFaults::Always(qv::platform::CallKind::Write, qv::platform::FileCause::DiskFull));
        const auto error = Raised<CFileException>([&] {
            page.AddText("x");
            page.CommitFile();
        });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->m_cause, CFileException::diskFull);
        page.CommitFile();
    }
    page.AddText("anew");
    page.CommitFile();
    EXPECT_EQ(folder.Read("page.html"), "anew");
}

TEST(HtmlWriter, OthersReadButDoNotWriteThePage) {
    const TempFolder folder;
    const CString path = folder / "page.html";
    CHtmlWriter page;
    page.SetFilename(path);
    page.AddText("x");
    CFile other;
    EXPECT_FALSE(other.Open(path, CFile::modeWrite | CFile::shareDenyNone));
    EXPECT_TRUE(other.Open(path, CFile::modeRead | CFile::shareDenyNone));
    other.Close();
    EXPECT_EQ(CHtmlWriter().AddHtmlFile(path), 0);
}

TEST(HtmlWriter, TakesTheBodyOfAPage) {
    const std::tuple<const char*, const char*> cases[] = {
        {"no tags\nat all", "no tags\nat all\n"},
        {"<html><body class=x>\nA\n</body></html>", "\nA\n"},
        {"<BODY>A</BODY>", "A"},
        {"<Body>A</Body>", "<Body>A</Body>\n"},
        {"<body", "<body\n"},
        {"<body>A", "A\n"},
        {"</body><body>A", ""},
        {"a\r\nb", "a\nb\n"},
        {"", ""},
    };
    const TempFolder folder;
    for (const auto& [file, body] : cases) {
        folder.Write("page", file);
        CHtmlWriter page;
        EXPECT_EQ(page.AddHtmlFile(folder / "page"), 1);
        EXPECT_EQ(page.GetHtml(), body) << file;
    }
}

}  // namespace
