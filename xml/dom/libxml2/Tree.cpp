#include <new>

#include "xml/dom/libxml2/Internals.h"

namespace qv::dom {
namespace {

xmlNode* FirstOrdinary(xmlNode* node, xmlNode* xmlNode::*way) {
    while (node && !IsOrdinary(node)) node = node->*way;
    return node;
}

bool IsAttribute(const Node& node) {
    return node.node->type == XML_ATTRIBUTE_NODE;
}

// Without the merging of texts that libxml2 does, which would take nodes from under their handles.
void Link(xmlNode* parent, xmlNode* child, xmlNode* before) {
    xmlNode* const previous = before ? before->prev : parent->last;
    child->parent = parent;
    child->prev = previous;
    child->next = before;
    (previous ? previous->next : parent->children) = child;
    (before ? before->prev : parent->last) = child;
}

// The declarations of namespaces have no nodes that could be handed out. Attributes of the same name and value stand for
// them, each a piece of its own.
xmlNode* DeclarationAsAttribute(Tree& tree, const xmlNs* ns) {
    const std::string name = ns->prefix ? "xmlns:" + std::string(View(ns->prefix)) : "xmlns";
    xmlAttr* const attribute = xmlNewDocProp(tree.doc, Xml(name.c_str()), nullptr);
    if (!attribute) throw std::bad_alloc();
    auto* const node = reinterpret_cast<xmlNode*>(attribute);
    attribute->children = attribute->last = xmlNewDocText(tree.doc, ns->href);
    if (attribute->children) attribute->children->parent = node;
    tree.orphans.emplace(node, 0);
    return node;
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

bool HasName(const xmlNs* ns, const xmlChar* local, std::string_view name) {
    if (ns && ns->prefix) {
        const std::string_view prefix = View(ns->prefix);
        if (!name.starts_with(prefix) || name.size() <= prefix.size() || name[prefix.size()] != ':') return false;
        name.remove_prefix(prefix.size() + 1);
    }
    return View(local) == name;
}

std::string QualifiedName(const xmlNs* ns, const xmlChar* local) {
    std::string name;
    if (ns && ns->prefix) name.append(View(ns->prefix)).append(":");
    return name.append(View(local));
}

xmlAttr* FindAttribute(xmlNode* element, std::string_view name) {
    if (element->type != XML_ELEMENT_NODE) return nullptr;
    for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next)
        if (HasName(attribute->ns, attribute->name, name)) return attribute;
    return nullptr;
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
    return Refer(*node.tree, reinterpret_cast<xmlNode*>(node.tree->doc));
}

std::vector<IXMLDOMNode> Attributes(Node& node) {
    std::vector<IXMLDOMNode> all;
    if (node.node->type != XML_ELEMENT_NODE) return all;
    for (const xmlNs* ns = node.node->nsDef; ns; ns = ns->next)
        all.push_back(HandleTo(*node.tree, DeclarationAsAttribute(*node.tree, ns)));
    for (xmlAttr* attribute = node.node->properties; attribute; attribute = attribute->next)
        all.push_back(HandleTo(*node.tree, reinterpret_cast<xmlNode*>(attribute)));
    return all;
}

void Insert(Node& parent, Node& child, Node* reference) {
    Adopt(*parent.tree, child, parent.node->type == XML_ELEMENT_NODE ? parent.node : nullptr);
    Link(parent.node, child.node, reference ? reference->node : nullptr);
    JoinOrphan(*parent.tree, child.node);
    if (child.node->type == XML_ELEMENT_NODE) xmlDOMWrapReconcileNamespaces(nullptr, child.node, 0);
}

void Remove(Node& parent, Node& child) {
    Detach(*parent.tree, child.node);
}

}  // namespace qv::dom
