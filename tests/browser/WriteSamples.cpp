// Writes samples into a folder, for the tests that drive a browser.
//
// pages: the sample pages, each as it is, and again with the support for browsers of today, its name then ending in "-today".
// charts: the sample charts, each as a file, in two sizes, and all of them in "charts.html".
// texts: "escaped.html" has texts in every place that escaping is for, its scripts put what the browser makes of them into
// `texts`, and "escaped.txt" lists what must come out as hexadecimal UTF-8, a line for each; "linked.html" has links against
// another base, "rebased.html" the same links rebased.

#include <clocale>
#include <cstdio>
#include <map>

#include "qvcommon/FileUtils.h"
#include "qvcommon/StringHelper.h"
#include "tests/support/SampleCharts.h"
#include "tests/support/SamplePages.h"

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
    // Markup, the script that puts what the browser reads there, and what that must be, without line feeds where they are
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

void WriteTexts(const CString& folder) {
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
    texts.Save(folder);
    const CString links = kLinks;
    CFileUtils::SaveFile(folder + "linked.html", kHead + ("<base href=\"" + CString(kBase) + "\"><body>" + links));
    CFileUtils::SaveFile(folder + "rebased.html",
                         kHead + ("<body>" + CHtmlWriter::GetRebasedBody("<body>" + links + "</body>", kBase)));
}

void WriteCharts(const CString& folder) {
    CString page(
        "<!DOCTYPE html><html lang=\"en\"><meta name=\"viewport\" content=\"width=device-width\"><title>Charts</title>"
        "<body><p id=\"outside\">Outside</p>");
    for (const int width : {720, 320})
        for (const SampleChart& chart : SampleCharts(width, width == 720 ? 400 : 280)) {
            CFileUtils::SaveFile(folder + chart.name + '-' + std::to_string(width) + ".svg", chart.svg);
            if (width == 720) page += chart.svg;
        }
    CFileUtils::SaveFile(folder + "charts.html", page);
}

void WritePages(const CString& folder) {
    for (const Sample& sample : SamplePages())
        for (const bool support : {false, true}) {
            SamplePage page(support);
            page.SetFilename(folder + sample.name + (support ? "-today.html" : ".html"));
            sample.Write(page);
            page.CommitFile();
        }
}

}  // namespace

int main(int argc, char** argv) {
    const std::map<std::string, void (*)(const CString&)> writers{
        {"pages", WritePages}, {"charts", WriteCharts}, {"texts", WriteTexts}};
    const auto writer = writers.find(argc == 3 ? argv[1] : "");
    if (writer == writers.end() || !std::setlocale(LC_ALL, "C.UTF-8")) {
        std::fputs("usage: write_samples pages|charts|texts FOLDER, where there is the locale C.UTF-8\n", stderr);
        return 2;
    }
    writer->second(CString(argv[2]) + '/');
    return 0;
}
