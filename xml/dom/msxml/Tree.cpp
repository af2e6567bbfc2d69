#include <algorithm>
#include <iterator>

#include "xml/dom/msxml/Internals.h"

namespace qv::dom {
namespace {

using Step = HRESULT (STDMETHODCALLTYPE ::IXMLDOMNode::*)(::IXMLDOMNode**);

IXMLDOMNode Go(Node& node, Step step) {
    ComPtr<::IXMLDOMNode> other;
    return Answer((Com(node)->*step)(other.Receive()), other);
}

bool IsType(const IXMLDOMNode& node) {
    return node && node.get_nodeType() == MSXML2::NODE_DOCUMENT_TYPE;
}

// Skips document type declarations, using the document's list of children: some DOMs do not return the siblings of one.
IXMLDOMNode PastType(IXMLDOMNode node, const MSXML2::IXMLDOMDocument& document, int way) {
    if (!IsType(node)) return node;
    const std::vector<IXMLDOMNode> children = ChildrenOfDocument(document.Get());
    const auto type = std::find_if(children.begin(), children.end(), IsType) - children.begin() + way;
    return type >= 0 && type < std::ssize(children) ? children[static_cast<std::size_t>(type)] : nullptr;
}

IXMLDOMNode GoPastType(Node& node, Step step, int way) {
    IXMLDOMNode other = Go(node, step);
    if (!IsType(other)) return other;
    return PastType(std::move(other), MSXML2::IXMLDOMDocument(OwnerDocument(node)), way);
}

}  // namespace

std::vector<IXMLDOMNode> ChildrenOfDocument(Node& document) {
    ComPtr<::IXMLDOMNodeList> list;
    Check(Com(document)->get_childNodes(list.Receive()));
    std::vector<IXMLDOMNode> all;
    for (ComPtr<::IXMLDOMNode> node; list->nextNode(node.Receive()) == S_OK && node;)
        all.push_back(HandleTo(node.Detach()));
    return all;
}

IXMLDOMNode Parent(Node& node) {
    return Go(node, &::IXMLDOMNode::get_parentNode);
}

IXMLDOMNode FirstChild(Node& node) {
    if (TypeOf(node) == MSXML2::NODE_ATTRIBUTE) return nullptr;
    IXMLDOMNode first = Go(node, &::IXMLDOMNode::get_firstChild);
    if (!IsType(first)) return first;
    Retain(node);
    return PastType(std::move(first), MSXML2::IXMLDOMDocument(&node), 1);
}

IXMLDOMNode NextSibling(Node& node) {
    return GoPastType(node, &::IXMLDOMNode::get_nextSibling, 1);
}

IXMLDOMNode PreviousSibling(Node& node) {
    return GoPastType(node, &::IXMLDOMNode::get_previousSibling, -1);
}

Node* OwnerDocument(Node& node) {
    ComPtr<::IXMLDOMDocument> document;
    Check(Com(node)->get_ownerDocument(document.Receive()));
    return document ? new Node{document.Detach()} : nullptr;
}

bool IsBeforeType(Node& child) {
    const MSXML2::IXMLDOMDocument document(OwnerDocument(child));
    const std::vector<IXMLDOMNode> children = ChildrenOfDocument(document.Get());
    const auto isChild = [&](const IXMLDOMNode& node) { return SameNode(node.Get(), child); };
    return std::any_of(std::find_if(children.begin(), children.end(), isChild), children.end(), IsType);
}

void Insert(Node& parent, Node& child, Node* reference) {
    const Variant before(reference ? Com(*reference) : nullptr);
    ComPtr<::IXMLDOMNode> inserted;
    if (reference)
        Check(Com(parent)->insertBefore(Com(child), before.Get(), inserted.Receive()));
    else
        Check(Com(parent)->appendChild(Com(child), inserted.Receive()));
}

void Remove(Node& parent, Node& child) {
    ComPtr<::IXMLDOMNode> removed;
    Check(Com(parent)->removeChild(Com(child), removed.Receive()));
}

IXMLDOMNode Clone(Node& node) {
    ComPtr<::IXMLDOMNode> copy;
    return Answer(Com(node)->cloneNode(VARIANT_TRUE, copy.Receive()), copy);
}

}  // namespace qv::dom
