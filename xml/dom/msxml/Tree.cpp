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
