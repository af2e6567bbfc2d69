#include "qvcommon/XmlSection.h"

#include <array>

#include "qvcommon/Exceptions.h"
#include "xml/SectionEscape.h"
#include "xml/SectionText.h"

CXmlSection::CXmlSection() = default;
CXmlSection::CXmlSection(std::string_view tag) : m_tag(tag) {}
CXmlSection::~CXmlSection() = default;
CXmlSection::CXmlSection(const CXmlSection&) = default;
CXmlSection::CXmlSection(CXmlSection&&) noexcept = default;
CXmlSection& CXmlSection::operator=(const CXmlSection&) = default;
CXmlSection& CXmlSection::operator=(CXmlSection&&) noexcept = default;

CString CXmlSection::GetNextTag() const {
    const std::uint32_t first = m_node ? m_node->FirstChild() : 0;
    return first ? CString(m_node->TagOf(first)) : CString();
}

void CXmlSection::Clear() {
    m_text.clear();
    m_verbatimLines.clear();
    m_indent = 0;
    m_node.reset();
}

BOOL CXmlSection::EmptyForSave() const {
    return m_text.empty() && (!m_node || m_node->Element().contentEnd == m_node->Element().content);
}

CString CXmlSection::GetRawXml() const {
    return m_node ? CString(m_node->Data()) : CString(m_text);
}

CString CXmlSection::GetIndex(int index, std::string_view tag) {
    CString key;
    key.Format("%08x%s", static_cast<unsigned>(index), CleanTag(tag));
    return key;
}

CString CXmlSection::Clean(std::string_view text) {
    std::string out;
    qv::AppendSectionText(out, text);
    return out;
}

CString CXmlSection::Dirty(std::string_view text) {
    return qv::SectionTextOf(text);
}

CString CXmlSection::CleanTag(std::string_view tag) {
    CString cleaned(tag);
    cleaned.Replace(' ', '_');
    return cleaned;
}

void CXmlSection::ThrowXmlException(int number, const char* message) {
    ThrowQvException(message, 0x10, number, 1);
}
