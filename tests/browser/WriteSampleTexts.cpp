// Writes pages into a folder, for the tests that drive a browser: "escaped.html" has texts in every place that escaping is
// for, its scripts put what the browser makes of them into `texts`, and "escaped.txt" lists what has to come out as
// hexadecimal UTF-8, a line for each; "linked.html" has links against another base, "rebased.html" the same links rebased.

#include <clocale>
#include <cstdio>

#include "qvcommon/FileUtils.h"
#include "qvcommon/HtmlWriter.h"
#include "qvcommon/StringHelper.h"

namespace {

constexpr const char* kHead = R"(<!DOCTYPE html><meta charset=utf-8><script>
window.texts = [];
function put(text) { window.texts.push(text); }
function textOf(element) {
  return [...element.childNodes].map(n => n.nodeName == "BR" ? "\r" : n.textContent).join("");
}
function popup(message) {
  const element = document.createElement("u");
  element.innerHTML = message;
  put(textOf(element));
}
</script>)";

constexpr const char* kHostileTexts[] = {"<script>harm()</script>",
                                         "</script><img src=x onerror=harm()>",
                                         "javascript:harm()",
                                         "&lt; &amp;lt; &#60; &nbsp &copy;",
                                         "\"quoted\" 'too' \\ \\\\' \\\"",
                                         "a\rb\r\n\nc",
                                         "\xC2\xA0\xC3\xA0\xE2\x80\xA0\xE2\x80\xA8\xF0\x9F\x98\x80",
                                         "-->]]></p></title></textarea>",
                                         "  blanks\tand\ttabs  ",
                                         "<br>&<br",
                                         "');harm();//",
                                         "\x01\x7F&#13;"};

constexpr const char* kLinks =
    "<a href=x><A HREF = '../y?a=1&amp;b=2#f'>l</A><a href=\"./a/./b/../c\"><a href='/r'><a href='?q'>"
    "<a href='&#46;&#x2E;&sol;z'><a href=\"a b%20c\"><a href='a\\b'><a href='./b:c'><a href='.//h'><a href=' x '>"
    "<a href='.\t./x'><a href='java&#115;cript:x'><a href='mailto:a'><a href='http://other.invalid/../x'>"
    "<a =href=no><a/href=slash/><a title='>'href=quoted><a href=first href=second><q cite='c/../d'>"
    "<!-- <a href=no> --!><a href=c1><!--><a href=c2><!-- > <a href=no> --><script>'<a href=no>'</script >"
    "<script><!-- <script></script><a href=no>--></script><a href=s1><style><a href=no></style/><a href=s2>"
    "<textarea><a href=no></textareas></textarea><a href=t1><noscript><area href=n></noscript></ x><?y><a href=e1>";
constexpr const char* kBase = "http://h.invalid/d1/d2/page.htm?x#y";

class Texts {
public:
    // Markup, the script that puts what the browser reads there, and what that has to be, line feeds apart where they are
    // layout only.
    void Add(const CString& html, const char* script, CString expected, bool isLayout) {
        m_page += html + "<script>" + script + "</script>";
        if (isLayout) expected.Remove('\n');
        for (const char c : expected.AsStd()) m_list += CStringHelper::Format("%02x", static_cast<unsigned char>(c));
        m_list += '\n';
    }
    void Save(const CString& folder) const {
        CFileUtils::SaveFile(folder + "escaped.html", kHead + m_page);
        CFileUtils::SaveFile(folder + "escaped.txt", m_list);
    }

private:
    CString m_page, m_list;
};

Texts EscapedTexts() {
    Texts texts;
    for (const CString text : kHostileTexts) {
        texts.Add("<p>" + CHtmlWriter::Clean(text) + "</p>", "put(textOf(document.querySelector('p:last-of-type')))",
                  text, true);
        if (text.Find('\r') < 0)
            texts.Add("<i title=\"" + CHtmlWriter::CleanFloatOver(text) + "\"></i>",
                      "put(document.querySelector('i:last-of-type').title)", text, false);
        texts.Add("<b onclick=\"popup('" + CHtmlWriter::CleanScriptParameter(text) + "')\"></b>",
                  "document.querySelector('b:last-of-type').click()", text, true);
    }
    const CString plain = "it's a \"test\" \\ with\n a line end";
    texts.Add("<s onclick=\"put('" + CHtmlWriter::CleanScriptParameter(plain, 1) + "')\"></s>",
              "document.querySelector('s').click()", plain, true);
    return texts;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 || !std::setlocale(LC_ALL, "C.UTF-8")) {
        std::fputs("usage: sample_texts FOLDER, where there is the locale C.UTF-8\n", stderr);
        return 2;
    }
    const CString folder = CString(argv[1]) + '/', links = kLinks;
    EscapedTexts().Save(folder);
    CFileUtils::SaveFile(folder + "linked.html", kHead + ("<base href=\"" + CString(kBase) + "\"><body>" + links));
    CFileUtils::SaveFile(folder + "rebased.html",
                         kHead + ("<body>" + CHtmlWriter::GetRebasedBody("<body>" + links + "</body>", kBase)));
    return 0;
}
