#include "qvcommon/Replacers.h"

#include "core/TextSearch.h"

CEscapedStringReplacer::~CEscapedStringReplacer() = default;

CString CEscapedStringReplacer::ReplaceEscapes(std::string_view text) {
    // GetEscapedText may change the markers; this loop uses the original ones.
    const CString startFind = m_startFind, endFind = m_endFind;
    if (startFind.IsEmpty()) return text;
    const std::string source(text);  // GetEscapedText may change the caller's string
    text = source;
    const qv::CaseRule rule = qv::CaseRuleFor(!m_caseSensitive);
    qv::TextSearch starts(text, startFind, rule), ends(text, endFind, rule);
    std::string out;
    std::size_t copied = 0;
    for (qv::Occurrence start = starts.Find(0); start;) {
        if (start.position > copied) out += text.substr(copied, start.position - copied);
        out += std::string_view(m_startReplace);
        copied = start.End();
        const qv::Occurrence end = ends.Find(copied);
        if (!end) break;
        out += std::string_view(GetEscapedText(text.substr(copied, end.position - copied)));
        out += std::string_view(m_endReplace);
        copied = end.End();
        start = starts.Find(end.position);
    }
    return out.append(text.substr(copied));
}

void CEscapedStringReplacer::SetCaseSentitive(int caseSensitive) {
    m_caseSensitive = caseSensitive;
}

CString CEscapedStringReplacer::GetStartFind() const {
    return m_startFind;
}

CString CEscapedStringReplacer::GetStartReplace() const {
    return m_startReplace;
}

CString CEscapedStringReplacer::GetEndFind() const {
    return m_endFind;
}

CString CEscapedStringReplacer::GetEndReplace() const {
    return m_endReplace;
}

void CEscapedStringReplacer::SetStartFind(std::string_view text) {
    m_startFind = text;
}

void CEscapedStringReplacer::SetStartReplace(std::string_view text) {
    m_startReplace = text;
}

void CEscapedStringReplacer::SetEndFind(std::string_view text) {
    m_endFind = text;
}

void CEscapedStringReplacer::SetEndReplace(std::string_view text) {
    m_endReplace = text;
}

CString CEscapedStringReplacer::GetEscapedText(std::string_view inner) {
    return inner;
}

CStripTag::CStripTag() {
    SetStartFind("<");
    SetEndFind(">");
}

CString CStripTag::GetEscapedText(std::string_view) {
    return " ";
}

CString CGetEscapedStrings::GetEscapedText(std::string_view inner) {
    m_texts.Add(inner);
    return {};
}
