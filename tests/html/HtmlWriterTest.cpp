#include "qvcommon/HtmlWriter.h"

#include <gtest/gtest.h>

#include "html/GoldenSalesPage.h"
#include "qvcommon/MultiUserFile.h"
#include "tests/support/FileFailure.h"
#include "tests/support/GoldenPage.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr auto kNone = CHtmlWriter::alignNone, kLeft = CHtmlWriter::alignLeft, kCenter = CHtmlWriter::alignCenter,
               kRight = CHtmlWriter::alignRight, kOdd = static_cast<CHtmlWriter::enumAlign>(7);

TEST(HtmlWriter, ExactTextElements) {
    CHtmlWriter page;
    page.OpenTag("b", "");
    page.AddText("<");
    page.CloseTag("b");
    page.AddHeading(1, "x");
    page.AddHeading(3, "y", "id=1");
    page.AddHeading(2, "A<B", kCenter);
    page.AddHeading(2, "A<B", kOdd);
    page.AddParagraph("x");
    page.AddParagraph("x", kRight, "class=\"a\"");
    page.AddParagraph("x", kLeft);
    page.AddParagraph("y", kOdd);
    page.AddBlankParagraph();
    page.AddPreformattedParagraph("a\r\nb", "c");
    page.AddCode("\tif(a<b)");
    page.OpenNumberList("start=3");
    page.AddLine("<b>");
    page.CloseNumberList();
    page.OpenBulletList();
    page.AddLine("x", "y");
    page.CloseBulletList();
    EXPECT_EQ(page.GetHtml(),
              "<b>&lt;</b>"
              "<h1>x</h1><h3 id=1>y</h3><h2 ALIGN=CENTER>A&lt;B</h2>A&lt;B</h2>"
              "<P>x</P><P class=\"a\" ALIGN=RIGHT>x</P><P  ALIGN=LEFT>x</P><P>y</P><P>&nbsp;</P>"
              "<pre c>a<br>b</pre><code>&nbsp;&nbsp;&nbsp;&nbsp;if(a&lt;b)</code>"
              "<ol start=3><li><b></li></ol><ul><li y>x</li></ul>");
}

TEST(HtmlWriter, ExactImagesLinksAndForms) {
    CHtmlWriter page;
    page.AddImage("a.gif", kNone, "", 0, 0, "");
    page.AddImage("a&.gif", kLeft, "\"<", 3, 0, "x");
    page.AddUppercaseImage("a", kOdd, nullptr, 3, 4);
    page.OpenHotlink("a?b&c");
    page.CloseHotlink();
    page.OpenBookmark("n");
    page.CloseBookmark();
    page.OpenBookmark("n", "p");
    page.AddBookmark("n<");
    page.OpenForm("go", "do");
    page.AddHiddenField("n", 0);
    page.CloseForm();
    page.AddSingleLineTextField("n", 10);
    page.AddSingleLineTextField("m", 5, -2);
    page.AddSingleLineTextField("n", 1, "");
    page.AddTitle("A&B", "css\\a.css", "base target=x");
    EXPECT_EQ(page.GetHtml(),
              "<img border=\"0\" src=\"a.gif\"   >"
              "<img border=\"0\" src=\"a&.gif\" ALIGN=LEFT alt=\"&quot;&lt;\" x>"
              "<img border=\"0\" src=\"a\"   WIDTH=\"3\" HEIGHT=\"4\" >"
              "<A href=\"a?b&c\"></A><A href=\"#n\"></A><A href=\"p#n\"><A Name=\"n<\"></A>"
              "<form method=\"POST\" action=\"go\"><input type=\"HIDDEN\" name=\"MfcISAPICommand\" value=\"do\">"
              "<input type=\"HIDDEN\" name=\"n\" value=\"0\"></form>"
              "<input type type=\"text\" name=\"n\" size=\"10\">"
              "<input type type=\"text\" name=\"m\" size=\"5\" value=\"-2\">"
              "<input type type=\"text\" name=\"n\" size=\"1\" value=\"\">"
              "<head><Title>A&amp;B</Title><link rel=\"stylesheet\" type=\"text/css\" href=\"css/a.css\">"
              "<base target=x></head>");
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

TEST(HtmlWriter, MemoryAndFileOutputMatch) {
    CHtmlWriter inMemory;
    WriteGoldenPage(inMemory);
    EXPECT_EQ(inMemory.GetHtml(), GoldenPage(qv::test::kGoldenSalesPage));

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
}

TEST(HtmlWriter, CopiesContentOnly) {
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
    EXPECT_STREQ(copy.GetRuntimeClass()->m_lpszClassName, "CHtmlWriter");

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
        const auto [cause, name] = FileFailureOf([&] { page.AddText("x"); });
        EXPECT_EQ(cause, CFileException::badPath);
        EXPECT_TRUE(name.AsStd().ends_with("page.html"));
    }
    CHtmlWriter other;
    EXPECT_EQ(other.AddHtmlFile(folder / "none"), 0);
    EXPECT_EQ(other.AddHtmlFile(folder / ""), 0);
    EXPECT_TRUE(other.IsEmpty());
    EXPECT_EQ(CHtmlWriter::GetFileBodyWords(folder / "none"), "");
}

TEST(HtmlWriter, RaisesDiskFullByCommit) {
    const TempFolder folder;
    CHtmlWriter page;
    page.SetFilename(folder / "page.html");
    {
        const SystemFaults faults(
            SystemFaults::Always(qv::platform::CallKind::Write, qv::platform::FileCause::DiskFull));
        const auto write = [&] {
            page.AddText("x");
            page.CommitFile();
        };
        EXPECT_EQ(FileFailureOf(write).first, CFileException::diskFull);
        page.CommitFile();
    }
    page.AddText("again");
    page.CommitFile();
    EXPECT_EQ(folder.Read("page.html"), "again");
}

TEST(HtmlWriter, OpenFileDeniesOtherWriters) {
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
    const TempFolder folder;
    using Row = std::tuple<const char*, const char*>;
    for (const auto& [file, body] :
         {Row{"no tags\nat all", "no tags\nat all\n"}, Row{"<html><body class=x>\nA\n</body></html>", "\nA\n"},
          Row{"<BODY>A</BODY>", "A"}, Row{"<Body>A</Body>", "<Body>A</Body>\n"}, Row{"<body", "<body\n"},
          Row{"<body>A", "A\n"}, Row{"</body><body>A", ""}, Row{"a\r\nb", "a\nb\n"}, Row{"", ""}}) {
        folder.Write("page", file);
        CHtmlWriter page;
        EXPECT_EQ(page.AddHtmlFile(folder / "page"), 1);
        EXPECT_EQ(page.GetHtml(), body) << file;
    }
}

}  // namespace
