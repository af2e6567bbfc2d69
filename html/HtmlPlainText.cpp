#include "core/ByteScan.h"
#include "html/Entities.h"
#include "html/HtmlTokenizer.h"
#include "qvcommon/HtmlWriter.h"

namespace {

// Collects text as lines without leading or repeated spaces.
class Lines {
public:
    explicit Lines(std::size_t expected) { m_text.reserve(expected); }

    void AddText(std::string_view text) {
        using Breaks = qv::ByteSet<' ', '\r', '\n'>;
        std::size_t from = 0;
        qv::ForEachByte(Breaks(), text, [&](std::size_t end) {
            m_text += text.substr(from, end - from);
            AddBlank();
            from = end + 1;
        });
        m_text += text.substr(from);
    }

    void AddBlank() {
        if (!m_text.ends_with(' ') && !m_text.ends_with('\n')) m_text += ' ';
    }

    void AddTag(std::string_view inner) {
        const std::string_view name = inner.substr(0, inner.find(' '));
        if (qv::html::IsName(name, "p") || qv::html::IsName(name, "br"))
            m_text += '\n';
        else if (qv::html::IsName(name, "li"))
            m_text += "\n* ";
        else
            AddBlank();
    }

    const std::string& Text() const { return m_text; }

private:
    std::string m_text;
};

// A "<" without a ">" after it is dropped; the rest is text.
Lines ReadLines(std::string_view html) {
    Lines lines(html.size());
    std::size_t from = 0;
    for (;;) {
        const std::size_t begin = html.find('<', from);
        lines.AddText(html.substr(from, begin - from));
        if (begin == html.npos) return lines;
        const std::size_t end = html.find('>', begin);
        from = begin + 1;
        if (end == html.npos) break;
        lines.AddTag(html.substr(from, end - from));
        from = end + 1;
    }
    lines.AddText(html.substr(from));
    return lines;
}

constexpr qv::html::Entity kEntities[] = {
    {"&nbsp;", " "}, {"&quot;", "\""}, {"&gt;", ">"}, {"&lt;", "<"}, {"&amp;", "&"}};

}  // namespace

CString CHtmlWriter::HtmlToPlainText(std::string_view html) {
    CString text = qv::html::DecodeEntities(ReadLines(html).Text(), kEntities);
    text.TrimLeft();
    text.TrimRight();
    text.Replace("\n", "\r\n");
    return text;
}
