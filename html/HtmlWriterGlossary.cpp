#include "html/Glossary.h"
#include "html/PopupScript.h"
#include "qvcommon/HtmlWriter.h"

namespace {

/// The opening tags of the terms, each created on first use.
class TermTags {
public:
    explicit TermTags(const CStringArray& explanations)
        : m_explanations(explanations), m_tags(explanations.AsStd().size()) {}

    const CString& For(std::size_t term) {
        CString& tag = m_tags[term];
        if (tag.IsEmpty()) {
            const CString message =
                "<P>" + CHtmlWriter::CleanScriptParameter(m_explanations[static_cast<int>(term)], 0) + "</P>";
            tag = "<span class=\"Glossary\" " + CHtmlWriter::GetPopupCalls(message) + '>';
        }
        return tag;
    }

private:
    const CStringArray& m_explanations;
    std::vector<CString> m_tags;
};

}  // namespace

void CHtmlWriter::AddPopupScript() {
    AddFormattedText(qv::html::kPopupScript);
}

CString CHtmlWriter::GetPopupCalls(std::string_view message) {
    return "ONMOUSEOVER=\"popup('" + CString(message) + "')\"; ONMOUSEOUT=\"hidePopup()\"";
}

CString CHtmlWriter::GetGlossarizedText(std::string_view text, const CStringArray& terms,
                                        const CStringArray& explanations) {
    if (explanations.GetSize() < terms.GetSize()) AfxThrowInvalidArgException();
    TermTags tags(explanations);
    std::string out;
    out.reserve(text.size() + text.size() / 8);
    std::size_t written = 0;
    for (const qv::html::GlossaryHit& hit : qv::html::FindTerms(text, terms)) {
        if (hit.begin > written) out += Clean(text.substr(written, hit.begin - written)).AsStd();
        out += tags.For(hit.term).AsStd();
        out += Clean(text.substr(hit.begin, hit.end - hit.begin)).AsStd();
        out += "</span>";
        written = hit.end;
    }
    return out += Clean(text.substr(written)).AsStd();
}

void CHtmlWriter::AddGlossarizedParagraph(std::string_view text, const CStringArray& terms,
                                          const CStringArray& explanations) {
    AddFormattedText("<P>" + GetGlossarizedText(text, terms, explanations) + "</P>");
}

int CHtmlWriter::IsWholeWord(std::string_view text, int start, int length) {
    const auto end = static_cast<std::size_t>(start) + static_cast<std::size_t>(length);
    return qv::html::IsWholeWord(text, static_cast<std::size_t>(start), end);
}
