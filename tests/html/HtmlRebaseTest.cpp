#include <gtest/gtest.h>

#include "qvcommon/HtmlWriter.h"
#include "tests/support/Raised.h"

namespace {

TEST(RebaseAddress, JoinsToFoldersAndAddresses) {
    const struct {
        const char *base, *value, *joined;  // null: stays as it is
    } cases[] = {
        // Folders in every form
        {"pages", "a.htm", "pages/a.htm"},
        {"pages\\img\\", "a.gif?x=1&amp;y=2#top", "pages/img/a.gif?x=1&amp;y=2#top"},
        {"C:\\My Pages\\", "sub\\a.htm", "file:///C:/My%20Pages/sub/a.htm"},
        {"C:", "a", "file:///C:/a"},
        {"\\\\server\\share", "../../a", "file://server/a"},
        {"/srv/100% #1?", "a", "/srv/100%25%20%231%3F/a"},
        {"R&D \"'<>`", "a", "R&amp;D%20%22%27%3C%3E%60/a"},
        {"..\\x", "../a", "../a"},
        {"a/b/../c", "a", "a/c/a"},
        // Addresses: what is after the last slash of the path does not count
        {"http://h/dir/page.htm?q#f", "a.htm", "http://h/dir/a.htm"},
        {"http://h", "a", "http://h/a"},
        {"http://h?q", "a", "http://h/a"},
        {"//h/dir/", "a", "//h/dir/a"},
        {"file:///C:/dir/page.htm", "../../../a", "file:///C:/a"},
        {"http://h/dir/page.htm", "/a/../b", "http://h/b"},
        {"http://h/dir/page.htm", "?q", "http://h/dir/page.htm?q"},
        {"http://h/a&b'c/", "x", "http://h/a&amp;b%27c/x"},
        // Steps of the path
        {"p", "./a/./b/../c/.", "p/a/c/"},
        {"p/q", "../../../a", "../a"},
        {"/p", "../../a/..", "/"},
        {"p", "..", "./"},
        {"p", "a//../b", "p/a/b"},
        {"p", "a\\b?c\\d/../e", "p/a/b?c\\d/../e"},
        {".", "a", "a"},
        {"p", "&#46;&#x2E;&sol;a&period;b", "a&period;b"},
        {"p", ".\t./a", "a"},
        // What would turn into something else
        {".", "./b:c", "./b:c"},
        {".", "./b&colon;c", "./b&colon;c"},
        {".", ".//h/x", ".//h/x"},
        {"/", ".//h/x", "/.//h/x"},
        {"p", "..?q", "./?q"},
        // Blanks around stay
        {"p", " \n a ", " \n p/a "},
        // Left alone
        {"p", "", nullptr},
        {"p", "#top", nullptr},
        {"p", "?q", nullptr},
        {"p", "/a", nullptr},
        {"p", "\\a", nullptr},
        {"p", "//host/a", nullptr},
        {"p", "\\\\server\\a", nullptr},
        {"p", "http://h/a", nullptr},
        {"p", "mailto:a@b", nullptr},
        {"p", "java&#115;cript\n&colon;x", nullptr},
        {"p", "C:\\a", nullptr},
        {"http://h/", "&sol;&sol;host/a", nullptr},
        {"", "a", nullptr},
        {"mailto:x", "a", nullptr},
    };
    for (const auto& c : cases) {
        const auto joined = qv::RebaseAddress(c.value, c.base);
        EXPECT_EQ(joined.value_or("-"), c.joined ? c.joined : "-") << c.base << " + " << c.value;
    }
}

TEST(HtmlDocument, FindsAddressesAsBrowsersDo) {
    const std::tuple<const char*, const char*> cases[] = {
        {"<a href=x>", "<a href=p/x>"},
        {"<A\nHREF = 'x' CLASS=y>", "<A\nHREF = 'p/x' CLASS=y>"},
        {"<img/src=\"x\"/alt='src=y'>", "<img/src=\"p/x\"/alt='src=y'>"},
        {"<a href=x/>", "<a href=p/x/>"},
        {"<a href=x href=y>", "<a href=p/x href=y>"},
        {"<a href href=y>", "<a href href=y>"},
        {"<a href=>x", "<a href=>x"},
        {"<a title='>' href=x>", "<a title='>' href=p/x>"},
        {"<a =href=x>", "<a =href=x>"},
        {"<form action=x><blockquote cite=y><object data=z usemap=#m><p data=z>",
         "<form action=p/x><blockquote cite=p/y><object data=p/z usemap=#m><p data=z>"},
        {"<body background=b.gif><a href=x></body>", "<a href=p/x>"},
        {"<head><base href=''></head><body><a href=x></body><a href=y></body>z", "<a href=p/x></body><a href=p/y>"},
        // No tags in these
        {"<!-- <a href=x> --><a href=y>", "<!-- <a href=x> --><a href=p/y>"},
        {"<!--><a href=x>", "<!--><a href=p/x>"},
        {"<!-- --!><a href=x>", "<!-- --!><a href=p/x>"},
        {"<!doctype a '><a href=x>", "<!doctype a '><a href=p/x>"},
        {"<script>'<a href=x>'</SCRIPT ><a href=y>", "<script>'<a href=x>'</SCRIPT ><a href=p/y>"},
        {"<script><!-- <script></script><a href=x>--></script><a href=y>",
         "<script><!-- <script></script><a href=x>--></script><a href=p/y>"},
        {"<script><!-- </script><a href=x>", "<script><!-- </script><a href=p/x>"},
        {"<style><a href=x></stylex></style><a href=y>", "<style><a href=x></stylex></style><a href=p/y>"},
        {"<title><a href=x></title><textarea><a href=x></textarea><a href=y>",
         "<title><a href=x></title><textarea><a href=x></textarea><a href=p/y>"},
        {"<plaintext><a href=x>", "<plaintext><a href=x>"},
        {"<script src=x>", "<script src=p/x>"},
        {"a < b <a href=x", "a < b <a href=x"},
        {"</a href=x></ x><? x><a href=y>", "</a href=x></ x><? x><a href=p/y>"},
    };
    for (const auto& [page, body] : cases) EXPECT_EQ(CHtmlWriter::GetRebasedBody(page, "p"), body) << page;
}

TEST(HtmlDocument, BaseElementComesBetween) {
    const std::tuple<const char*, const char*> cases[] = {
        {"sub/index.htm", "p/sub/x"},
        {"http://h/d/", "http://h/d/x"},
        {"../", "x"},
        {"#f", "p/x"},
        {"javascript:x", "p/x"},
        {"/r/s", "/r/x"},
        {"http://h/'", "http://h/x"},
    };
    for (const auto& [href, joined] : cases) {
        const CString page = CString("<base target=t><base href=\"") + href + "\"><base href=late><body><a href=x>";
        EXPECT_EQ(CHtmlWriter::GetRebasedBody(page, "p"), CString("<a href=") + joined + ">") << href;
    }
    const CString longPage = "<base href='" + CString('b', 1025) + "/'><body><a href=x>";
    EXPECT_EQ(CHtmlWriter::GetRebasedBody(longPage, "p"), "<a href=p/x>");
}

TEST(HtmlDocument, RebasesWhatItIsAskedFor) {
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
