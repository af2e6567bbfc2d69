#include <algorithm>
#include <deque>
#include <iterator>
#include <utility>

#include "core/KeyedHash.h"
#include "qvcommon/XmlHelper.h"
#include "xml/Elements.h"
#include "xml/Fragments.h"
#include "xml/dom/Backend.h"
#include "xml/dom/Characters.h"
#include "xml/dom/CodePage.h"
#include "xml/dom/Held.h"
#include "xml/dom/Markup.h"

namespace {

using Node = MSXML2::IXMLDOMNode;
using Element = MSXML2::IXMLDOMElement;
using Nodes = std::vector<Node>;
using qv::ChildrenOf;
using qv::IsElement;

// Returns the root of a fragment; its document lives as long as its nodes.
Element Parse(std::string_view xml) {
    return CXmlHelper::GetDocumentElement(xml);
}

// Inserts all nodes or none.
Node InsertAll(const Node& parent, const Nodes& nodes, const Node& reference) {
    auto next = nodes.begin();
    try {
        for (; next != nodes.end(); ++next) parent.insertBefore(*next, reference);
    } catch (...) {
        while (next != nodes.begin()) parent.removeChild(*--next);
        throw;
    }
    return nodes.empty() ? Node() : nodes.front();
}

void RequireRoom(const Node& parent, const Nodes& nodes) {
    const int depth = qv::dom::DepthOf(parent.Get());
    for (const Node& node : nodes)
        if (depth + qv::dom::HeightOf(node.Get()) > qv::dom::kMaxDepth)
            _com_raise_error(_com_error::kInvalidArg, "elements are nested too deeply");
}

// KeyOfElement in UTF-8, and the namespace.
std::string KeyOf(const Node& node) {
    std::string key = qv::dom::NameOf(node.Get()), type;
    if (qv::dom::GetAttribute(node.Get(), "typ", type)) (key += ' ') += type;
    return (key += '\n') += qv::dom::NamespaceOf(node.Get());
}

std::string MarkupOf(const Node& node) {
    return qv::dom::MarkupOf(node);
}

// Elements of the old content that can be reused; null once reused.
class Reusable {
public:
    Reusable(Nodes& elements, std::string (*keyOf)(const Node&)) : m_elements(elements) {
        for (std::size_t i = 0; i < elements.size(); ++i)
            if (elements[i]) m_waiting[keyOf(elements[i])].push_back(i);
    }

    Node Take(const std::string& key) {
        const auto waiting = m_waiting.find(key);
        if (waiting == m_waiting.end() || waiting->second.empty()) return nullptr;
        const std::size_t index = waiting->second.front();
        waiting->second.pop_front();
        return std::exchange(m_elements[index], nullptr);
    }

private:
    Nodes& m_elements;
    qv::KeyedMap<std::string, std::deque<std::size_t>> m_waiting;
};

void TakeOver(const Element& to, const Element& from) {
    qv::dom::CopyAttributes(to.Get(), from.Get());
    for (const Node& child : ChildrenOf(to)) to.removeChild(child);
    InsertAll(to, ChildrenOf(from), nullptr);
}

// Replaces new elements by the old ones that they repeat: first by markup, then by name, type and namespace.
void Merge(const Nodes& old, Nodes& fresh) {
    Nodes elements;
    std::copy_if(old.begin(), old.end(), std::back_inserter(elements), IsElement);
    std::vector<Node*> open;
    Reusable same(elements, MarkupOf);
    for (Node& node : fresh) {
        if (!IsElement(node)) continue;
        if (Node kept = same.Take(MarkupOf(node)))
            node = std::move(kept);
        else
            open.push_back(&node);
    }
    Reusable similar(elements, KeyOf);
    for (Node* const node : open) {
        Node kept = similar.Take(KeyOf(*node));
        if (!kept || !qv::dom::CanCopyAttributes(kept.Get(), node->Get())) continue;
        TakeOver(Element(kept), Element(*node));
        *node = std::move(kept);
    }
}

// The nodes must have passed RequireRoom.
void ReplaceContent(const Element& element, Nodes fresh) {
    const Nodes old = ChildrenOf(element);
    for (const Node& child : old) element.removeChild(child);
    Merge(old, fresh);
    InsertAll(element, fresh, nullptr);
}

}  // namespace

void qv::MakeEqual(const Element& target, const Element& source) {
    Nodes copies;
    for (const Node& child : ChildrenOf(source)) copies.push_back(dom::Clone(child.Get()));
    RequireRoom(target, copies);
    if (!dom::CanCopyAttributes(target.Get(), source.Get()))
        _com_raise_error(_com_error::kInvalidArg, "a prefix of the attributes has another meaning there");
    dom::CopyAttributes(target.Get(), source.Get());
    ReplaceContent(target, std::move(copies));
}

CString CXmlHelper::GetInnerXml(std::string_view xml) {
    const Element root = GetDocumentElement(xml);
    return root ? GetInnerXml(root) : CString();
}

CString CXmlHelper::GetInnerXml(const Node& node) {
    node.Get();
    return qv::dom::ToCodePage(qv::dom::InnerMarkupOf(node, qv::dom::Markup::CodePage));
}

BOOL CXmlHelper::SetXml(const Element& element, std::string_view xml) {
    element.Get();
    const Element wrapper = Parse(CString("<x>") + xml + "</x>");
    if (!wrapper) return 0;
    Nodes fresh = ChildrenOf(wrapper);
    RequireRoom(element, fresh);
    ReplaceContent(element, std::move(fresh));
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
