#include "xml/dom/msxml/Internals.h"

namespace qv::dom {
namespace {

using Step = HRESULT (STDMETHODCALLTYPE ::IXMLDOMNode::*)(::IXMLDOMNode**);

IXMLDOMNode Go(Node& node, Step step) {
    Owned<::IXMLDOMNode> other;
    return Answer((Com(node)->*step)(&other), other);
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
    Owned<::IXMLDOMDocument> document;
    Check(Com(node)->get_ownerDocument(&document));
    return document ? new Node{document.Release()} : nullptr;
}

// Some DOMs count declarations of namespaces that they then cannot give.
std::vector<IXMLDOMNode> Attributes(Node& node) {
    std::vector<IXMLDOMNode> all;
    Owned<::IXMLDOMNamedNodeMap> map;
    if (Check(Com(node)->get_attributes(&map)) != S_OK || !map) return all;
    long count = 0;
    Check(map->get_length(&count));
    for (long i = 0; i < count; ++i) {
        Owned<::IXMLDOMNode> attribute;
        if (map->get_item(i, &attribute) == S_OK && attribute) all.push_back(HandleTo(attribute.Release()));
    }
    return all;
}

void Insert(Node& parent, Node& child, Node* reference) {
    const Variant before(reference ? Com(*reference) : nullptr);
    Owned<::IXMLDOMNode> inserted;
    if (reference)
        Check(Com(parent)->insertBefore(Com(child), before.Get(), &inserted));
    else
        Check(Com(parent)->appendChild(Com(child), &inserted));
}

void Remove(Node& parent, Node& child) {
    Owned<::IXMLDOMNode> removed;
    Check(Com(parent)->removeChild(Com(child), &removed));
}

}  // namespace qv::dom
