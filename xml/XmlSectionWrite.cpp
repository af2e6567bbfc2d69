#include <charconv>

#include "qvcommon/XmlSection.h"
#include "xml/Numbers.h"
#include "xml/SectionEscape.h"
#include "xml/SectionText.h"

namespace {

constexpr int kStep = 4;

void AppendTag(std::string& out, std::string_view begin, std::string_view tag) {
    out += begin;
    const std::size_t from = out.size();
    out += tag;
    for (std::size_t i = from; i < out.size(); ++i)
        if (out[i] == ' ') out[i] = '_';
    out += '>';
}

}  // namespace

void CXmlSection::AppendRawXml(std::string_view text, BOOL indentAfter, BOOL outdentBefore) {
    if (outdentBefore) m_indent = std::max(m_indent - kStep, 0);
    m_text.append(static_cast<std::size_t>(m_indent), ' ').append(text) += '\n';
    if (indentAfter) m_indent += kStep;
}

void CXmlSection::AddElement(std::string_view tag, std::string_view escaped) {
    m_text.append(static_cast<std::size_t>(m_indent), ' ');
    AppendTag(m_text, "<", tag);
    m_text += escaped;
    AppendTag(m_text, "</", tag);
    m_text += '\n';
}

void CXmlSection::OpenElement(std::string_view tag) {
    AppendRawXml("<" + CleanTag(tag) + ">", 1, 0);
}

void CXmlSection::CloseElement(std::string_view tag) {
    AppendRawXml("</" + CleanTag(tag) + ">", 0, 1);
}

void CXmlSection::AddString(std::string_view tag, std::string_view text, BOOL force) {
    if (text.empty() && !force) return;
    m_text.append(static_cast<std::size_t>(m_indent), ' ');
    AppendTag(m_text, "<", tag);
    qv::AppendSectionText(m_text, text);
    AppendTag(m_text, "</", tag);
    m_text += '\n';
}

void CXmlSection::AddInteger(std::string_view tag, int value, BOOL force) {
    char digits[16];
    if (value || force)
        AddElement(tag, {digits, static_cast<std::size_t>(std::to_chars(digits, digits + 16, value).ptr - digits)});
}

void CXmlSection::AddDouble(std::string_view tag, double value, BOOL force) {
    if (value != 0 || force) AddElement(tag, qv::WriteFixed(value));
}

void CXmlSection::AddBool(std::string_view tag, BOOL value, BOOL force) {
    if (value || force) AddElement(tag, value ? "TRUE" : "FALSE");
}

void CXmlSection::AddDate(std::string_view tag, const COleDateTime& value, BOOL force) {
    const bool valid = value.GetStatus() == COleDateTime::valid;
    if (valid || force) AddElement(tag, valid ? qv::WriteDate(value, false) : "INVALID DATE");
}

void CXmlSection::AddStringArray(std::string_view tag, const CStringArray& texts, BOOL force) {
    if (texts.IsEmpty() && !force) return;
    OpenElement(tag);
    for (const CString& text : texts) AddString("ITEM", text, force);
    CloseElement(tag);
}

void CXmlSection::AddStringToStringMap(std::string_view tag, const CMapStringToString& map, BOOL force) {
    if (map.IsEmpty() && !force) return;
    OpenElement(tag);
    for (const auto& [key, value] : map) {
        OpenElement("ENTRY");
        AddString("KEY", key, 1);
        AddString("VALUE", value, 1);
        CloseElement("ENTRY");
    }
    CloseElement(tag);
}

void CXmlSection::AddStringToIntMap(std::string_view tag, const CMapStringToInt& map, BOOL force) {
    CMapStringToString texts;
    for (const auto& [key, value] : map) texts.SetAt(key, std::to_string(value));
    AddStringToStringMap(tag, texts, force);
}

void CXmlSection::AddSection(const CXmlSection& section, BOOL force) {
    if (section.EmptyForSave() && !force) return;
    if (&section == this) return AddSection(CXmlSection(section), force);
    if (section.m_node) return AddElement(section.m_tag, section.m_node->Content());
    OpenElement(section.m_tag);
    const std::string_view lines = section.m_text;
    for (std::size_t from = 0, end; from < lines.size(); from = end + 1) {
        end = std::min(lines.find('\n', from), lines.size());
        AppendRawXml(lines.substr(from, end - from), 0, 0);
    }
    CloseElement(section.m_tag);
}

void CXmlSection::AddObject(const CXmlObject& object, BOOL force) {
    CXmlSection section(CleanTag(object.GetType()));
    object.SaveXml(section);
    AddSection(section, force);
}

void CXmlSection::AddObjectArray(std::string_view tag, const CXmlObjectArray& objects, BOOL force) {
    if (objects.IsEmpty() && !force) return;
    OpenElement(tag);
    for (const CXmlObject* const object : objects) AddObject(*object, 1);
    CloseElement(tag);
}
