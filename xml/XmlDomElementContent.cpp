#include "qvcommon/XmlDomElement.h"
#include "xml/Elements.h"
#include "xml/Fragments.h"
#include "xml/dom/Backend.h"

// Setting a text may replace elements that have wrappers.
bool CXmlDomElement::HoldsElements(std::string_view path, int index) const {
    const Node node = m_element.selectSingleNode(CString(path) + CXmlHelper::GetTagIndex(index));
    return node && node.get_nodeType() == MSXML2::NODE_ELEMENT && node.selectSingleNode("*");
}

BOOL CXmlDomElement::Changed(bool elements, BOOL result) {
    if (elements && result) ParseAgain();
    return result;
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
    const bool replaces = HoldsElements(path, index);
    return Changed(replaces, CXmlHelper::SetString(m_element, path, value, index));
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
    const bool replaces = HoldsElements(path, index);
    return Changed(replaces, CXmlHelper::SetInteger(m_element, path, value, index));
}

BOOL CXmlDomElement::GetIntegerArray(std::string_view path, CUIntArray& values, int mode) {
    return CXmlHelper::GetIntegerArray(m_element, path, values, mode);
}

BOOL CXmlDomElement::GetDouble(std::string_view path, double& value, int index) {
    return CXmlHelper::GetDouble(m_element, path, value, index);
}

BOOL CXmlDomElement::SetDouble(std::string_view path, double value, int index) {
    const bool replaces = HoldsElements(path, index);
    return Changed(replaces, CXmlHelper::SetDouble(m_element, path, value, index));
}

BOOL CXmlDomElement::GetBool(std::string_view path, BOOL& value, int index) {
    return CXmlHelper::GetBool(m_element, path, value, index);
}

BOOL CXmlDomElement::SetBool(std::string_view path, BOOL value, int index) {
    const bool replaces = HoldsElements(path, index);
    return Changed(replaces, CXmlHelper::SetBool(m_element, path, value, index));
}

BOOL CXmlDomElement::GetBoolArray(std::string_view path, CUIntArray& values, int mode) {
    return CXmlHelper::GetBoolArray(m_element, path, values, mode);
}

BOOL CXmlDomElement::GetDate(std::string_view path, COleDateTime& value, int index) {
    return CXmlHelper::GetDate(m_element, path, value, index);
}

BOOL CXmlDomElement::SetDate(std::string_view path, const COleDateTime& value, int index) {
    const bool replaces = HoldsElements(path, index);
    return Changed(replaces, CXmlHelper::SetDate(m_element, path, value, index));
}

BOOL CXmlDomElement::RemoveNodes(std::string_view path) {
    BOOL removed = 0;
    for (const Node& node : m_element.selectNodes(path)) {
        const bool attribute = node.get_nodeType() == MSXML2::NODE_ATTRIBUTE;
        const Node above = attribute ? qv::dom::OwnerOf(node.Get()) : node.get_parentNode();
        if (!above) continue;
        if (attribute)
            qv::dom::RemoveAttribute(above.Get(), qv::dom::NameOf(node.Get()));
        else
            above.removeChild(node);
        removed = 1;
    }
    return Changed(true, removed);
}

BOOL CXmlDomElement::SetXml(std::string_view xml) {
    return Changed(true, CXmlHelper::SetXml(m_element, xml));
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
    SyncNode(m_element, source.m_element);
    ParseAgain();
}

void CXmlDomElement::SyncNode(const Element& target, const Element& source) {
    if (target == source) return;
    std::vector<Node> copies;
    for (const Node& child : qv::ChildrenOf(source)) copies.push_back(qv::dom::Clone(child.Get()));
    qv::dom::CopyAttributes(target.Get(), source.Get());
    qv::ReplaceContent(target, std::move(copies));
}
