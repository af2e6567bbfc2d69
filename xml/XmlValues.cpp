#include <functional>

#include "qvcommon/XmlHelper.h"
#include "xml/Numbers.h"

namespace {

using Node = MSXML2::IXMLDOMNode;

constexpr const char* kInvalidDate = "INVALID";

Node Find(const Node& element, std::string_view path, int index) {
    if (index <= 0) return element.selectSingleNode(path);
    return element.selectSingleNode(CString(path) + CXmlHelper::GetTagIndex(index));
}

}  // namespace

BOOL CXmlHelper::GetString(const Node& element, std::string_view path, CString& value, int index) {
    const Node node = Find(element, path, index);
    if (!node) return 0;
    value = node.get_text();
    value.Replace("\n", "\r\n");
    return 1;
}

BOOL CXmlHelper::SetString(const Node& element, std::string_view path, std::string_view value, int index) {
    const Node node = Find(element, path, index);
    if (!node) return 0;
    node.put_text(value);
    return 1;
}

BOOL CXmlHelper::GetInteger(const Node& element, std::string_view path, int& value, int index) {
    CString text;
    if (!GetString(element, path, text, index)) return 0;
    value = qv::ReadInteger(text);
    return 1;
}

BOOL CXmlHelper::SetInteger(const Node& element, std::string_view path, int value, int index) {
    return SetString(element, path, std::to_string(value), index);
}

BOOL CXmlHelper::GetDouble(const Node& element, std::string_view path, double& value, int index) {
    CString text;
    if (!GetString(element, path, text, index)) return 0;
    value = qv::ReadDouble(text);
    return 1;
}

BOOL CXmlHelper::SetDouble(const Node& element, std::string_view path, double value, int index) {
    return SetString(element, path, qv::WriteShort(value), index);
}

BOOL CXmlHelper::GetBool(const Node& element, std::string_view path, BOOL& value, int index) {
    CString text;
    const BOOL found = GetString(element, path, text, index);
    value = qv::ReadBool(text);
    return found;
}

BOOL CXmlHelper::SetBool(const Node& element, std::string_view path, BOOL value, int index) {
    return SetString(element, path, value ? "TRUE" : "FALSE", index);
}

BOOL CXmlHelper::GetDate(const Node& element, std::string_view path, COleDateTime& value, int index) {
    CString text;
    const BOOL found = GetString(element, path, text, index);
    if (!found || text == kInvalidDate)
        value.SetStatus(COleDateTime::invalid);
    else
        value.ParseDateTime(text);
    return found;
}

BOOL CXmlHelper::SetDate(const Node& element, std::string_view path, const COleDateTime& value, int index) {
    const bool valid = value.GetStatus() == COleDateTime::valid;
    return SetString(element, path, valid ? qv::WriteDate(value, true) : kInvalidDate, index);
}

BOOL CXmlHelper::GetAttribute(const Element& element, std::string_view name, UINT& value) {
    CString text;
    if (!element.getAttribute(name, text)) return 0;
    value = static_cast<UINT>(qv::ReadInteger(text));
    return 1;
}

BOOL CXmlHelper::GetAttribute(const Element& element, std::string_view name, CString& value) {
    return element.getAttribute(name, value);
}

BOOL CXmlHelper::SetAttribute(const Element& element, std::string_view name, std::string_view value) {
    element.setAttribute(name, value);
    return 1;
}

BOOL CXmlHelper::SetAttribute(const Element& element, std::string_view name, UINT value) {
    return SetAttribute(element, name, std::string_view(std::to_string(static_cast<int>(value))));
}

void CXmlHelper::AddAttribute(const Element& element, std::string_view name, std::string_view value) {
    element.setAttribute(name, value);
}

void CXmlHelper::AddAttribute(const Element& element, std::string_view name, UINT value) {
    AddAttribute(element, name, std::string_view(std::to_string(static_cast<int>(value))));
}

BOOL CXmlHelper::GetAttributeArray(const Node& element, std::string_view path, std::string_view name,
                                   CStringArray& values) {
    CString value;
    CStringArray found;  // `path` or `name` may be one of the values
    for (const Node& node : element.selectNodes(path))
        if (const Element each(node); each && each.getAttribute(name, value)) found.Add(value);
    values.Append(found);
    return !values.IsEmpty();
}

BOOL CXmlHelper::GetAttributeArray(const Node& element, std::string_view path, std::string_view name,
                                   CUIntArray& values) {
    CStringArray texts;
    GetAttributeArray(element, path, name, texts);
    for (const CString& text : texts) values.Add(static_cast<UINT>(qv::ReadInteger(text)));
    return !values.IsEmpty();
}

CXmlHelper::Element CXmlHelper::AddElement(const Node& element, std::string_view tag, long value) {
    return AddElement(element, tag, std::string_view(std::to_string(value)));
}

CXmlHelper::Element CXmlHelper::AddElement(const Node& element, std::string_view tag, std::string_view text) {
    const Document self(element), document = self ? self : element.get_ownerDocument();
    Element added = document.createElement(tag, element);
    if (!text.empty()) added.put_text(text);
    element.appendChild(added);
    return added;
}
