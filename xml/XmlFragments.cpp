#include <algorithm>
#include <deque>
#include <iterator>
#include <unordered_map>
#include <utility>

#include "qvcommon/XmlHelper.h"
#include "xml/Elements.h"
#include "xml/dom/Characters.h"
#include "xml/dom/Markup.h"

namespace {

using Node = MSXML2::IXMLDOMNode;
using Element = MSXML2::IXMLDOMElement;
using Nodes = std::vector<Node>;
using qv::ChildrenOf;
using qv::IsElement;

// The root of a fragment; its document lives as long as its nodes.
Element Parse(std::string_view xml) {
    return CXmlHelper::GetDocumentElement(xml);
}

// What hangs together in a fragment goes over piece by piece.
Node InsertAll(const Node& parent, const Nodes& nodes, const Node& reference) {
    for (const Node& node : nodes) parent.insertBefore(node, reference);
    return nodes.empty() ? Node() : nodes.front();
}

CString MarkupOf(const Node& node) {
    return node.get_xml();
}

CString KeyOf(const Node& node) {
    return qv::KeyOfElement(Element(node));
}

// Elements of the old content, waiting to be used again; a null one is used.
class Reusable {
public:
    Reusable(Nodes& elements, CString (*keyOf)(const Node&)) : m_elements(elements) {
        for (std::size_t i = 0; i < elements.size(); ++i)
            if (elements[i]) m_waiting[keyOf(elements[i]).AsStd()].push_back(i);
    }

    Node Take(const CString& key) {
        const auto waiting = m_waiting.find(key.AsStd());
        if (waiting == m_waiting.end() || waiting->second.empty()) return nullptr;
        const std::size_t index = waiting->second.front();
        waiting->second.pop_front();
        return std::exchange(m_elements[index], nullptr);
    }

private:
    Nodes& m_elements;
    std::unordered_map<std::string, std::deque<std::size_t>> m_waiting;
};

void TakeOver(const Element& to, const Element& from) {
    qv::CopyAttributes(to, from);
    for (const Node& child : ChildrenOf(to)) to.removeChild(child);
    InsertAll(to, ChildrenOf(from), nullptr);
}

// Puts old elements in the places of the new ones that repeat them: first to the letter, then by name and type.
void Merge(const Nodes& old, Nodes& fresh) {
    Nodes elements;
    std::copy_if(old.begin(), old.end(), std::back_inserter(elements), IsElement);
    std::vector<Node*> open;
    Reusable same(elements, MarkupOf);
    for (Node& node : fresh) {
        if (!IsElement(node)) continue;
        if (Node kept = same.Take(node.get_xml()))
            node = std::move(kept);
        else
            open.push_back(&node);
    }
    Reusable similar(elements, KeyOf);
    for (Node* const node : open) {
        Node kept = similar.Take(KeyOf(*node));
        if (!kept) continue;
        TakeOver(Element(kept), Element(*node));
        *node = std::move(kept);
    }
}

}  // namespace

CString CXmlHelper::GetInnerXml(std::string_view xml) {
    const Element root = GetDocumentElement(xml);
    return root ? GetInnerXml(root) : CString();
}

CString CXmlHelper::GetInnerXml(const Node& node) {
    node.Get();
    return qv::dom::InnerMarkupOf(node);
}

BOOL CXmlHelper::SetXml(const Element& element, std::string_view xml) {
    element.Get();
    const Element wrapper = Parse(CString("<x>") + xml + "</x>");
    if (!wrapper) return 0;
    const Nodes old = ChildrenOf(element);
    for (const Node& child : old) element.removeChild(child);
    Nodes fresh = ChildrenOf(wrapper);
    Merge(old, fresh);
    InsertAll(element, fresh, nullptr);
    return 1;
}

CXmlHelper::Node CXmlHelper::AppendXml(const Node& parent, std::string_view xml, BOOL root) {
    return AppendXmlBeforeNode(parent, xml, nullptr, root);
}

CXmlHelper::Node CXmlHelper::AppendXmlBeforeNode(const Node& parent, std::string_view xml, const Node& reference,
                                                 BOOL root) {
    parent.Get();
    if (qv::dom::IsBlank(xml)) return nullptr;
    const Element fragment = Parse(xml);
    fragment.Get();
    return InsertAll(parent, root ? Nodes{fragment} : ChildrenOf(fragment), reference);
}
