#include <gtest/gtest.h>

#include "qvcommon/HtmlWriter.h"
#include "tests/support/Raised.h"

namespace {

TEST(RebaseAddress, JoinsWithFoldersAndUrls) {
    using Row = std::tuple<const char*, const char*, const char*>;
    for (const auto& [base, value, joined] :
         {// Folders in every form
          Row{"pages\\img\\", "a.gif?x=1&amp;y=2#top", "pages/img/a.gif?x=1&amp;y=2#top"},
          Row{"C:\\My Pages\\", "sub\\a.htm", "file:///C:/My%20Pages/sub/a.htm"}, Row{"C:", "a", "file:///C:/a"},
          Row{"\\\\server\\share", "../../a", "file://server/a"}, Row{"/srv/100% #1?", "a", "/srv/100%25%20%231%3F/a"},
          Row{"R&D \"'<>`", "a", "R&amp;D%20%22%27%3C%3E%60/a"}, Row{"..\\x", "../a", "../a"},
          Row{"a/b/../c", "a", "a/c/a"},
          // Addresses: what follows the last slash of the path does not count
          Row{"http://h/dir/page.htm?q#f", "a.htm", "http://h/dir/a.htm"}, Row{"http://h", "a", "http://h/a"},
          Row{"http://h?q", "a", "http://h/a"}, Row{"//h/dir/", "a", "//h/dir/a"},
          Row{"file:///C:/dir/page.htm", "../../../a", "file:///C:/a"},
          Row{"http://h/dir/page.htm", "/a/../b", "http://h/b"},
          Row{"http://h/dir/page.htm", "?q", "http://h/dir/page.htm?q"},
          Row{"http://h/a&b'c/", "x", "http://h/a&amp;b%27c/x"},
          // Steps of the path
          Row{"p", "./a/./b/../c/.", "p/a/c/"}, Row{"p/q", "../../../a", "../a"}, Row{"/p", "../../a/..", "/"},
          Row{"p", "..", "./"}, Row{"p", "a//../b", "p/a/b"}, Row{"p", "a\\b?c\\d/../e", "p/a/b?c\\d/../e"},
          Row{".", "a", "a"}, Row{"p", "&#46;&#x2E;&sol;a&period;b", "a&period;b"}, Row{"p", ".\t./a", "a"},
          // What would turn into something else
          Row{".", "./b:c", "./b:c"}, Row{".", "./b&colon;c", "./b&colon;c"}, Row{".", ".//h/x", ".//h/x"},
          Row{"/", ".//h/x", "/.//h/x"}, Row{"p", "..?q", "./?q"},
          // Blanks around stay
          Row{"p", " \n a ", " \n p/a "}})
        EXPECT_EQ(qv::RebaseAddress(value, base), joined) << base << " + " << value;

    for (const char* const value : {"", "#top", "?q", "/a", "\\a", "//host/a", "\\\\server\\a", "http://h/a",
                                    "mailto:a@b", "java&#115;cript\n&colon;x", "C:\\a"})
        EXPECT_EQ(qv::RebaseAddress(value, "p"), std::nullopt) << value;
    for (const char* const base : {"", "mailto:x"}) EXPECT_EQ(qv::RebaseAddress("a", base), std::nullopt) << base;
    EXPECT_EQ(qv::RebaseAddress("&sol;&sol;host/a", "http://h/"), std::nullopt);
}

TEST(HtmlDocument, FindsUrlsLikeBrowsers) {
    // "@" marks the places where the base is inserted.
    for (const char* const marked :
         {"<a href=@x>", "<A\nHREF = '@x' CLASS=y>", "<img/src=\"@x\"/alt='src=y'>", "<a href=@x/>",
          "<a href=@x href=y>", "<a href href=y>", "<a href=>x", "<a title='>' href=@x>", "<a =href=x>",
          "<form action=@x><blockquote cite=@y><object data=@z usemap=#m><p data=z>", "<script src=@x>",
          // No tags in these
          "<!-- <a href=x> --><a href=@y>", "<!--><a href=@x>", "<!-- --!><a href=@x>", "<!doctype a '><a href=@x>",
          "<script>'<a href=x>'</SCRIPT ><a href=@y>", "<script><!-- </script><a href=@x>",
          "<script><!-- <script></script><a href=x>--></script><a href=@y>",
          "<style><a href=x></stylex></style><a href=@y>",
          "<title><a href=x></title><textarea><a href=x></textarea><a href=@y>", "<plaintext><a href=x>",
          "a < b <a href=x", "</a href=x></ x><? x><a href=@y>"}) {
        CString page = marked, body = marked;
        page.Remove('@');
        body.Replace("@", "p/");
        EXPECT_EQ(CHtmlWriter::GetRebasedBody(page, "p"), body);
    }
    EXPECT_EQ(CHtmlWriter::GetRebasedBody("<body background=b.gif><a href=x></body>", "p"), "<a href=p/x>");
    EXPECT_EQ(CHtmlWriter::GetRebasedBody("<head><base href=''></head><body><a href=x></body><a href=y></body>z", "p"),
              "<a href=p/x></body><a href=p/y>");
}

TEST(HtmlDocument, HonoursBaseElement) {
    using Row = std::tuple<const char*, const char*>;
    for (const auto& [href, joined] :
         {Row{"sub/index.htm", "p/sub/x"}, Row{"http://h/d/", "http://h/d/x"}, Row{"../", "x"}, Row{"#f", "p/x"},
          Row{"javascript:x", "p/x"}, Row{"/r/s", "/r/x"}, Row{"http://h/'", "http://h/x"}}) {
        const CString page = CString("<base target=t><base href=\"") + href + "\"><base href=late><body><a href=x>";
        EXPECT_EQ(CHtmlWriter::GetRebasedBody(page, "p"), CString("<a href=") + joined + ">") << href;
    }
    const CString longPage = "<base href='" + CString('b', 1025) + "/'><body><a href=x>";
    EXPECT_EQ(CHtmlWriter::GetRebasedBody(longPage, "p"), "<a href=p/x>");
}

TEST(HtmlDocument, RebasesRequestedElements) {
    CHtmlDocument page = CHtmlWriter::LoadDocument("<A HREF=a><img src=b longdesc=c><p><area href=d>");
    ASSERT_EQ(page.GetElementCount(), 3);
    EXPECT_EQ(page.GetTag(0), "a");
    EXPECT_TRUE(CHtmlWriter::RebaseElement(page, 1, "src", "p"));
    EXPECT_TRUE(CHtmlWriter::RebaseElement(page, 1, "src", "q"));
    EXPECT_FALSE(CHtmlWriter::RebaseElement(page, 1, "href", "p"));
    EXPECT_EQ(CHtmlWriter::RebaseCollection(page, "area", "href", "p"), 1);
    EXPECT_EQ(page.GetHtml(), "<A HREF=a><img src=q/b longdesc=c><p><area href=p/d>");
    EXPECT_EQ(CHtmlWriter::RebaseCollection(page, "", "href", "r"), 2);
    EXPECT_EQ(page.GetHtml(), "<A HREF=r/a><img src=q/b longdesc=c><p><area href=r/d>");
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { CHtmlWriter::RebaseElement(page, 3, "href", "p"); }));
}

}  // namespace
