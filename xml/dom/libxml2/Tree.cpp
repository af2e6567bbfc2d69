#include "xml/dom/libxml2/names/Scope.h"

namespace qv::dom {
namespace {

xmlNode* FirstOrdinary(xmlNode* node, xmlNode* xmlNode::*way) {
    while (node && !IsOrdinary(node)) node = node->*way;
    return node;
}

bool IsAttribute(const Node& node) {
    return node.node->type == XML_ATTRIBUTE_NODE;
}

// Links without merging texts as libxml2 does, which would free nodes that have handles.
void Link(xmlNode* parent, xmlNode* child, xmlNode* before) {
    xmlNode* const previous = before ? before->prev : parent->last;
    child->parent = parent;
    child->prev = previous;
    child->next = before;
    (previous ? previous->next : parent->children) = child;
    (before ? before->prev : parent->last) = child;
}

}  // namespace

bool IsOrdinary(const xmlNode* node) {
    switch (node->type) {
        case XML_ELEMENT_NODE:
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
        case XML_COMMENT_NODE:
        case XML_PI_NODE: return true;
        default: return false;
    }
}

IXMLDOMNode Parent(Node& node) {
    return IsAttribute(node) ? nullptr : HandleTo(*node.tree, node.node->parent);
}

IXMLDOMNode FirstChild(Node& node) {
    const bool has = node.node->type == XML_ELEMENT_NODE || node.node->type == XML_DOCUMENT_NODE;
    return has ? HandleTo(*node.tree, FirstOrdinary(node.node->children, &xmlNode::next)) : nullptr;
}

IXMLDOMNode NextSibling(Node& node) {
    if (IsAttribute(node) || node.node->type == XML_DOCUMENT_NODE) return nullptr;
    return HandleTo(*node.tree, FirstOrdinary(node.node->next, &xmlNode::next));
}

IXMLDOMNode PreviousSibling(Node& node) {
    if (IsAttribute(node) || node.node->type == XML_DOCUMENT_NODE) return nullptr;
    return HandleTo(*node.tree, FirstOrdinary(node.node->prev, &xmlNode::prev));
}

Node* OwnerDocument(Node& node) {
    if (node.node->type == XML_DOCUMENT_NODE) return nullptr;
    return AcquireNode(*node.tree, reinterpret_cast<xmlNode*>(node.tree->doc));
}

bool IsBeforeType(Node& child) {
    const xmlNode* next = child.node->next;
    while (next && next->type != XML_DTD_NODE) next = next->next;
    return next;
}

void Insert(Node& parent, Node& child, Node* reference) {
    const std::vector<Binding> bindings = BindingsOf(*child.tree, child.node);
    Adopt(*parent.tree, child);
    Link(parent.node, child.node, reference ? reference->node : nullptr);
    Joined(*parent.tree, child.node);
    Settle(*parent.tree, child.node, bindings);
}

void Remove(Node& parent, Node& child) {
    Detach(*parent.tree, child.node);
}

IXMLDOMNode Clone(Node& node) {
    const std::vector<Binding> bindings = BindingsOf(*node.tree, node.node);
    IXMLDOMNode copy = HandleToOrphan(*node.tree, xmlDocCopyNode(node.node, node.tree->doc, 1));
    Settle(*node.tree, copy.Get().node, bindings);
    return copy;
}

}  // namespace qv::dom
