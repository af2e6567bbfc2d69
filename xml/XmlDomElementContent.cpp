#include "qvcommon/XmlDomElement.h"

#include <algorithm>

#include "xml/Fragments.h"
#include "xml/dom/Backend.h"

namespace {

using Node = MSXML2::IXMLDOMNode;

bool IsAttribute(const Node& node) {
    return node.get_nodeType() == MSXML2::NODE_ATTRIBUTE;
}

Node ParentOrOwner(const Node& node) {
    return IsAttribute(node) ? qv::dom::OwnerOf(node.Get()) : node.get_parentNode();
}

// Returns false for a node that an earlier removal left without a parent.
bool RemoveNode(const Node& node) {
    const Node above = ParentOrOwner(node);
    if (!above) return false;
    if (IsAttribute(node))
        qv::dom::RemoveAttribute(above.Get(), qv::dom::NameOf(node.Get()));
    else
        above.removeChild(node);
    return true;
}

}  // namespace

// Setting a text may replace elements that have wrappers.
void CXmlDomElement::PrepareText(std::string_view path, int index) {
    const Node node = m_element.selectSingleNode(CString(path) + CXmlHelper::GetTagIndex(index));
    if (node && node.get_nodeType() == MSXML2::NODE_ELEMENT && node.selectSingleNode("*")) PrepareChange(node);
}

// Called before the content of a node changes, so that wrappers are also updated if the change fails halfway. A path may
// lead outside this element.
void CXmlDomElement::PrepareChange(const Node& node) {
    (qv::dom::Holds(m_element.Get(), node.Get()) ? this : m_root)->ParseAgain();
}

BOOL CXmlDomElement::GetAttribute(std::string_view name, CString& value) {
    return CXmlHelper::GetAttribute(m_element, name, value);
}

BOOL CXmlDomElement::SetAttribute(std::string_view name, std::string_view value) {
    return CXmlHelper::SetAttribute(m_element, name, value);
}

BOOL CXmlDomElement::GetAttributeArray(std::string_view path, std::string_view name, CStringArray& values) {
    return CXmlHelper::GetAttributeArray(m_element, path, name, values);
}

BOOL CXmlDomElement::SetString(std::string_view path, std::string_view value, int index) {
    PrepareText(path, index);
    return CXmlHelper::SetString(m_element, path, value, index);
}

BOOL CXmlDomElement::GetString(std::string_view path, CString& value, int index) {
    return CXmlHelper::GetString(m_element, path, value, index);
}

CString CXmlDomElement::GetInnerXml() {
    return CXmlHelper::GetInnerXml(m_element);
}

BOOL CXmlDomElement::GetStringArray(std::string_view path, CStringArray& values, int mode) {
    return CXmlHelper::GetStringArray(m_element, path, values, mode);
}

BOOL CXmlDomElement::GetInteger(std::string_view path, int& value, int index) {
    return CXmlHelper::GetInteger(m_element, path, value, index);
}

BOOL CXmlDomElement::SetInteger(std::string_view path, int value, int index) {
    PrepareText(path, index);
    return CXmlHelper::SetInteger(m_element, path, value, index);
}

BOOL CXmlDomElement::GetIntegerArray(std::string_view path, CUIntArray& values, int mode) {
    return CXmlHelper::GetIntegerArray(m_element, path, values, mode);
}

BOOL CXmlDomElement::GetDouble(std::string_view path, double& value, int index) {
    return CXmlHelper::GetDouble(m_element, path, value, index);
}

BOOL CXmlDomElement::SetDouble(std::string_view path, double value, int index) {
    PrepareText(path, index);
    return CXmlHelper::SetDouble(m_element, path, value, index);
}

BOOL CXmlDomElement::GetBool(std::string_view path, BOOL& value, int index) {
    return CXmlHelper::GetBool(m_element, path, value, index);
}

BOOL CXmlDomElement::SetBool(std::string_view path, BOOL value, int index) {
    PrepareText(path, index);
    return CXmlHelper::SetBool(m_element, path, value, index);
}

BOOL CXmlDomElement::GetBoolArray(std::string_view path, CUIntArray& values, int mode) {
    return CXmlHelper::GetBoolArray(m_element, path, values, mode);
}

BOOL CXmlDomElement::GetDate(std::string_view path, COleDateTime& value, int index) {
    return CXmlHelper::GetDate(m_element, path, value, index);
}

BOOL CXmlDomElement::SetDate(std::string_view path, const COleDateTime& value, int index) {
    PrepareText(path, index);
    return CXmlHelper::SetDate(m_element, path, value, index);
}

BOOL CXmlDomElement::RemoveNodes(std::string_view path) {
    const std::vector<Node> nodes = m_element.selectNodes(path);
    const auto isInside = [&](const Node& node) {
        const Node above = ParentOrOwner(node);
        return above && qv::dom::Holds(m_element.Get(), above.Get());
    };
    (std::all_of(nodes.begin(), nodes.end(), isInside) ? this : m_root)->ParseAgain();
    return std::count_if(nodes.begin(), nodes.end(), RemoveNode) > 0;
}

BOOL CXmlDomElement::SetXml(std::string_view xml) {
    ParseAgain();
    return CXmlHelper::SetXml(m_element, xml);
}

CXmlDomElement* CXmlDomElement::AppendXml(std::string_view xml, BOOL root) {
    Node node = CXmlHelper::AppendXml(m_element, xml, root);
    m_parsed = 0;
    while (node && node.get_nodeType() != MSXML2::NODE_ELEMENT) node = node.get_nextSibling();
    return FindElementForNode(node);
}

BOOL CXmlDomElement::RemoveChild(CXmlDomElement* child) {
    const CXmlDomElementArray& children = GetChildren();
    for (int i = 0; i < children.GetSize(); ++i)
        if (children[i] == child) return RemoveChild(i);
    return 0;
}

BOOL CXmlDomElement::RemoveChild(int position) {
    if (position < 0 || position >= GetChildren().GetSize()) return 0;
    m_element.removeChild(m_children[position]->m_element);
    delete m_children[position];
    m_children.RemoveAt(position);
    return 1;
}

BOOL CXmlDomElement::MoveChildUp(int position) {
    if (position < 1 || position >= GetChildren().GetSize()) return 0;
    m_element.insertBefore(m_children[position]->m_element, m_children[position - 1]->m_element);
    std::swap(m_children[position], m_children[position - 1]);
    return 1;
}

void CXmlDomElement::RemoveChildren() {
    for (Node node = m_element.get_firstChild(); node;) {
        const Node next = node.get_nextSibling();
        if (node.get_nodeType() == MSXML2::NODE_ELEMENT) m_element.removeChild(node);
        node = next;
    }
    DeleteChildren();
}

void CXmlDomElement::SyncNode(const CXmlDomElement& source) {
    ParseAgain();
    SyncNode(m_element, source.m_element);
}

void CXmlDomElement::SyncNode(const Element& target, const Element& source) {
    if (!(target == source)) qv::MakeEqual(target, source);
}
