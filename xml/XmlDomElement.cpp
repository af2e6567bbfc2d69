#include "qvcommon/XmlDomElement.h"

#include <algorithm>

#include "qvcommon/ClassFactory.h"
#include "xml/Elements.h"
#include "xml/dom/Backend.h"

IMPLEMENT_DYNAMIC(CXmlDomElement, CObject)

CXmlDomElement::~CXmlDomElement() {
    DeleteChildren();
}

void CXmlDomElement::DeleteChildren() {
    for (CXmlDomElement* const child : m_children) delete child;
    m_children.RemoveAll();
}

CString CXmlDomElement::GetFullTag() {
    return qv::KeyOfElement(m_element);
}

void CXmlDomElement::SetElement(const Element& element, CXmlDomElement* root) {
    m_element = element;
    m_parsed = 0;
    m_root = root ? root : this;
}

BOOL CXmlDomElement::HasDomElement() {
    return static_cast<bool>(m_element);
}

CXmlDomElement::Element CXmlDomElement::GetDomElement() {
    if (!m_parsed) Parse();
    return m_element;
}

const CXmlDomElementArray& CXmlDomElement::GetChildren() {
    if (!m_parsed) Parse();
    return m_children;
}

CXmlDomElement::Document CXmlDomElement::GetDomDoc() {
    if (m_root && m_root != this) return m_root->GetDomDoc();
    if (!m_document) {
        m_document = CXmlHelper::CreateDocument();
        m_document.put_async(false);
        m_document.put_validateOnParse(false);
        m_root = this;
    }
    return m_document;
}

// Returns the document of the tree's elements, which may differ from the tree's own.
CXmlDomElement::Document CXmlDomElement::DocumentOfElements() {
    const CXmlDomElement& root = m_root ? *m_root : *this;
    return root.m_element ? root.m_element.get_ownerDocument() : GetDomDoc();
}

// Keeps the wrappers of elements that are still children, deletes the others and appends new ones. Strong exception
// guarantee: a class may raise when its wrapper is made.
void CXmlDomElement::Parse() {
    std::vector<Node> known;
    for (const CXmlDomElement* const child : m_children) known.emplace_back(child->m_element);
    const std::vector<int> indexes = qv::dom::IndexesAmong(m_element.Get(), known);
    std::vector<bool> keep(known.size());
    m_parsed = 1;
    try {
        std::vector<std::unique_ptr<CXmlDomElement>> fresh = MakeChildren(indexes, keep);
        m_children.SetSize(static_cast<int>(known.size() + fresh.size()));
        std::transform(fresh.begin(), fresh.end(), m_children.begin() + static_cast<std::ptrdiff_t>(known.size()),
                       [](std::unique_ptr<CXmlDomElement>& child) { return child.release(); });
    } catch (...) {
        m_parsed = 0;
        throw;
    }
    for (int i = static_cast<int>(keep.size()) - 1; i >= 0; --i) {
        if (keep[static_cast<std::size_t>(i)]) continue;
        delete m_children[i];
        m_children.RemoveAt(i);
    }
}

// Makes wrappers for child elements that have none and marks in `keep` the wrappers that stay.
std::vector<std::unique_ptr<CXmlDomElement>> CXmlDomElement::MakeChildren(const std::vector<int>& indexes,
                                                                          std::vector<bool>& keep) {
    std::vector<std::unique_ptr<CXmlDomElement>> made;
    auto index = indexes.begin();
    for (Node node = m_element.get_firstChild(); node; node = node.get_nextSibling()) {
        const Element element(node);
        if (!element) continue;
        if (const int place = *index++; place >= 0)
            keep[static_cast<std::size_t>(place)] = true;
        else if (std::unique_ptr<CXmlDomElement> child = MakeChild(element))
            made.push_back(std::move(child));
    }
    return made;
}

std::unique_ptr<CXmlDomElement> CXmlDomElement::MakeChild(const Element& element) {
    std::unique_ptr<CObject> object(CQVClassFactory::CreateObject(qv::KeyOfElement(element)));
    auto* const child = dynamic_cast<CXmlDomElement*>(object.get());
    if (!child) return nullptr;
    child->SetElement(element, m_root ? m_root : this);
    static_cast<void>(object.release());
    return std::unique_ptr<CXmlDomElement>(child);
}

// Called after a change at any depth below.
void CXmlDomElement::ParseAgain() {
    m_parsed = 0;
    for (CXmlDomElement* const child : m_children) child->ParseAgain();
}

CXmlDomElement* CXmlDomElement::FindElementForNode(const Node& node) {
    if (!m_element || !node) return nullptr;
    if (m_element == node) return this;
    for (CXmlDomElement* const child : GetChildren())
        if (qv::dom::Holds(child->m_element.Get(), node.Get())) return child->FindElementForNode(node);
    return nullptr;
}

CXmlDomElement* CXmlDomElement::GetElement(std::string_view path, int index, int fromDocument, int create) {
    const CString full = CString(path) + CXmlHelper::GetTagIndex(index);
    const Node start = fromDocument ? Node(DocumentOfElements()) : Node(m_element);
    Node node = start.selectSingleNode(full);
    if (!node && create && fromDocument) {
        node = start.selectSingleNode(CXmlHelper::CreateXmlPath(Document(start), full));
        m_root->ParseAgain();
    }
    return (fromDocument ? m_root : this)->FindElementForNode(node);
}

CXmlDomElement* CXmlDomElement::GetParent() {
    const Node parent = m_element.get_parentNode();
    return m_root && m_root != this ? m_root->FindElementForNode(parent) : nullptr;
}

BOOL CXmlDomElement::IsDocElement() const {
    const Node parent = m_element.get_parentNode();
    return parent && parent.get_nodeType() == MSXML2::NODE_DOCUMENT;
}

CString CXmlDomElement::GetNodePath(const CXmlDomElement* base) const {
    return CXmlHelper::GetNodePath(m_element, base ? base->m_element : Element());
}

BOOL CXmlDomElement::LoadXml(std::string_view xml) {
    const Document document = GetDomDoc();
    const BOOL loaded = CXmlHelper::LoadXml(document, xml);
    if (m_root == this) SetElement(document.get_documentElement());
    return loaded;
}
