#include "xml/dom/msxml/Internals.h"

namespace qv::dom {
namespace {

using Step = HRESULT (STDMETHODCALLTYPE ::IXMLDOMNode::*)(::IXMLDOMNode**);

IXMLDOMNode Go(Node& node, Step step) {
    ComPtr<::IXMLDOMNode> other;
    return Answer((Com(node)->*step)(other.Receive()), other);
}

}  // namespace

IXMLDOMNode Parent(Node& node) {
    return Go(node, &::IXMLDOMNode::get_parentNode);
}

IXMLDOMNode FirstChild(Node& node) {
    return TypeOf(node) == MSXML2::NODE_ATTRIBUTE ? nullptr : Go(node, &::IXMLDOMNode::get_firstChild);
}

IXMLDOMNode NextSibling(Node& node) {
    return Go(node, &::IXMLDOMNode::get_nextSibling);
}

IXMLDOMNode PreviousSibling(Node& node) {
    return Go(node, &::IXMLDOMNode::get_previousSibling);
}

Node* OwnerDocument(Node& node) {
    ComPtr<::IXMLDOMDocument> document;
    Check(Com(node)->get_ownerDocument(document.Receive()));
    return document ? new Node{document.Detach()} : nullptr;
}

// Some DOMs count declarations of namespaces that they then cannot give.
std::vector<IXMLDOMNode> Attributes(Node& node) {
    std::vector<IXMLDOMNode> all;
    ComPtr<::IXMLDOMNamedNodeMap> map;
    if (Check(Com(node)->get_attributes(map.Receive())) != S_OK || !map) return all;
    long count = 0;
    Check(map->get_length(&count));
    for (long i = 0; i < count; ++i) {
        ComPtr<::IXMLDOMNode> attribute;
        if (map->get_item(i, attribute.Receive()) == S_OK && attribute) all.push_back(HandleTo(attribute.Detach()));
    }
    return all;
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

}  // namespace qv::dom
