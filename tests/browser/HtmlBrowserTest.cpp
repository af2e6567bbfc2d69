// What a real browser makes of the library's pages.

#include <gtest/gtest.h>

#include "qvcommon/HtmlWriter.h"
#include "qvcommon/framework/Process.h"
#include "tests/support/ScopedLocale.h"
#include "tests/support/TempFolder.h"

namespace {

// Collects texts by the function `put` and shows them as hexadecimal UTF-8 in the page.
constexpr std::string_view kCollector = R"(<script>
const texts = [];
function put(text) {
  texts.push([...new TextEncoder().encode(text)].map(b => b.toString(16).padStart(2, "0")).join(""));
}
function textOf(element) {
  return [...element.childNodes].map(n => n.nodeName == "BR" ? "\r" : n.textContent).join("");
}
function show() { document.documentElement.innerHTML = "<body>[" + texts.join(",") + "]</body>"; }
</script>)";

std::string FromHex(std::string_view hex) {
    std::string text;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        text += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return text;
}

std::vector<std::string> ReadTexts(std::string_view dom) {
    std::vector<std::string> texts;
    const std::size_t begin = dom.find("<body>["), end = dom.find("]</body>");
    if (begin == dom.npos || end == dom.npos) return texts;
    for (std::size_t from = begin + 7; from <= end;) {
        const std::size_t next = std::min(dom.find(',', from), end);
        texts.push_back(FromHex(dom.substr(from, next - from)));
        from = next + 1;
    }
    return texts;
}

class Browser : public testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(kProgram)) GTEST_SKIP() << "no " << kProgram;
        if (!m_locale) GTEST_SKIP() << "no UTF-8 locale";
    }

    // What the page's scripts have put.
    std::vector<std::string> Load(const std::string& page) {
        m_folder.Write("page.html", page);
        const std::string profile = "--user-data-dir=" + m_folder.Native("profile").string(),
                          address = "file://" + m_folder.Native("page.html").string();
        CProcess browser;
        browser.Start(kProgram,
                      {"--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
                       "--disable-background-networking", "--disable-component-update", "--disable-sync",
                       "--log-level=3", profile.c_str(), "--dump-dom", address.c_str()},
                      CProcess::pipeOutput);
        std::string dom;
        char buffer[4096];
        while (const UINT count = browser.Output().CFile::Read(buffer, sizeof buffer)) dom.append(buffer, count);
        EXPECT_EQ(browser.Wait(), 0);
        return ReadTexts(dom);
    }

    static constexpr const char* kProgram = "/usr/bin/chromium";
    ScopedLocale m_locale{"C.UTF-8"};
    TempFolder m_folder;
};

const std::vector<std::string> kHostileTexts = {"<script>alert(1)</script>",
                                                "&lt; &amp;lt; &#60; &nbsp &copy;",
                                                "\"quoted\" 'too' \\ \\\\' \\\"",
                                                "a\rb\r\n\nc",
                                                "\xC2\xA0\xC3\xA0\xE2\x80\xA0\xF0\x9F\x98\x80",
                                                "-->]]></p></title></textarea>",
                                                "  blanks\tand\ttabs  ",
                                                "<br>&<br",
                                                "');put('gone');//",
                                                "\x01\x7F&#13;"};

std::string WithoutLineFeeds(std::string text) {
    std::erase(text, '\n');
    return text;
}

TEST_F(Browser, ShowsEscapedTextAsItWas) {
    std::string page = "<!DOCTYPE html><meta charset=utf-8>" + std::string(kCollector);
    std::vector<std::string> expected;
    const auto add = [&](const CString& html, const std::string& text) {
        page += html.AsStd();
        expected.push_back(text);
    };
    for (const std::string& text : kHostileTexts) {
        add("<p>" + CHtmlWriter::Clean(text) +
                "</p><script>put(textOf(document.querySelector('p:last-of-type')))</script>",
            WithoutLineFeeds(text));
        if (text.find('\r') == text.npos)
            add("<i title=\"" + CHtmlWriter::CleanFloatOver(text) +
                    "\"></i><script>put(document.querySelector('i:last-of-type').title)</script>",
                text);
        add("<b onclick=\"popup('" + CHtmlWriter::CleanScriptParameter(text) +
                "')\"></b><script>function popup(message) { const e = document.createElement('u'); e.innerHTML = "
                "message; "
                "put(textOf(e)); } document.querySelector('b:last-of-type').click()</script>",
            WithoutLineFeeds(text));
    }
    const std::string plain = "it's a \"test\" \\ with\n a line end";
    add("<s onclick=\"put('" + CHtmlWriter::CleanScriptParameter(plain, 1) +
            "')\"></s><script>document.querySelector('s').click()</script>",
        WithoutLineFeeds(plain));
    EXPECT_EQ(Load(page + "<script>show()</script>"), expected);
}

// The addresses of all links, as the browser resolves them.
constexpr std::string_view kPutLinks =
    "<script>for (const e of document.querySelectorAll('a[href],area[href]')) put(e.href);"
    "for (const e of document.querySelectorAll('q[cite]')) put(e.cite);show()</script>";

TEST_F(Browser, FollowsRebasedLinksToTheSamePlaces) {
    const std::string body =
        "<a href=x><A HREF = '../y?a=1&amp;b=2#f'>l</A><a href=\"./a/./b/../c\"><a href='/r'><a href='?q'>"
        "<a href='&#46;&#x2E;&sol;z'><a href=\"a b%20c\"><a href='a\\b'><a href='./b:c'><a href='.//h'><a href=' x '>"
        "<a href='.\t./x'><a href='java&#115;cript:x'><a href='mailto:a'><a href='http://other.invalid/../x'>"
        "<a =href=no><a/href=slash/><a title='>'href=quoted><a href=first href=second><q cite='c/../d'>"
        "<!-- <a href=no> --!><a href=c1><!--><a href=c2><!-- > <a href=no> --><script>'<a href=no>'</script >"
        "<script><!-- <script></script><a href=no>--></script><a href=s1><style><a href=no></style/><a href=s2>"
        "<textarea><a href=no></textareas></textarea><a href=t1><noscript><area href=n></noscript></ x><?y><a href=e1>";
    const std::string base = "http://h.invalid/d1/d2/page.htm?x#y";
    const std::string head = "<!DOCTYPE html><meta charset=utf-8>" + std::string(kCollector);
    const auto resolved = Load(head + "<base href=\"" + base + "\"><body>" + body + std::string(kPutLinks));
    const CString rebased = CHtmlWriter::GetRebasedBody("<body>" + body + "</body>", base);
    EXPECT_NE(rebased.AsStd(), body);
    EXPECT_GT(resolved.size(), 20u);
    EXPECT_EQ(Load(head + "<body>" + rebased.AsStd() + std::string(kPutLinks)), resolved);
}

}  // namespace
