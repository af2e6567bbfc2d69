#pragma once

/// @file The nodes of libxml2 behind the handles.
///
/// A node that has handles has one Node, at its `_private`. A Tree is an xmlDoc with everything that belongs to it: it
/// lives as long as a Node in it. What was taken out of the document lives on as an orphan while handles look at it.
///
/// Names are whole: that of an element or attribute with a prefix is "p:name", and its `ns` is null. What a prefix means is
/// looked up in the declarations (`nsDef`) of the elements around (names/Scope.h). So no node ever points to a declaration,
/// which may go before it.

#include <libxml/tree.h>

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/KeyedHash.h"
#include "xml/dom/Backend.h"

namespace qv::dom {

/// The child elements of one name, in order, of a parent that a path with an index has passed.
struct NamedChildren {
    std::string name;
    std::vector<xmlNode*> nodes;
};

/// The attributes of the element last changed that has many.
struct NamedAttributes {
    const xmlNode* element = nullptr;
    KeyedMap<std::string_view, xmlAttr*> byName = {};
    xmlAttr* last = nullptr;
};

struct Tree {
    xmlDoc* doc;
    bool keepSpace = false;
    bool namespaces = false;  // false: no declaration was ever in it
    MSXML2::IXMLDOMParseError problem = {};
    std::unordered_map<const xmlNode*, NamedChildren> children = {};  // until the tree changes
    NamedAttributes attributes = {};                                  // until an attribute goes
    std::size_t nodes = 0;                                            // Nodes in it
    std::unordered_map<xmlNode*, std::size_t> orphans = {};  // the top of each, and how many Nodes there are in it
};

struct Node {
    xmlNode* node;
    Tree* tree;
    std::size_t references;
};

inline const xmlChar* Xml(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}
inline std::string_view View(const xmlChar* text) {
    return text ? reinterpret_cast<const char*>(text) : "";
}
inline xmlNode* AsNode(xmlAttr* attribute) {
    return reinterpret_cast<xmlNode*>(attribute);
}

/// A reference to a node; null for null.
Node* Refer(Tree& tree, xmlNode* node);
inline IXMLDOMNode HandleTo(Tree& tree, xmlNode* node) {
    return IXMLDOMNode(Refer(tree, node));
}
/// The same for a new node that stands nowhere.
IXMLDOMNode HandleToOrphan(Tree& tree, xmlNode* node);

/// Puts another document, and what is known about it, in the place of a document's content.
void ReplaceTree(Node& document, xmlDoc* doc, bool namespaces);
/// Takes a node out of what it stands in; without handles it is gone.
void Detach(Tree& tree, xmlNode* node);
/// Makes a node, which may be an orphan or stand elsewhere, part of the tree. It has no parent then.
void Adopt(Tree& tree, Node& node);
/// To be called when a node has come to stand in the tree, or in an orphan.
void Joined(Tree& tree, xmlNode* node);

/// The node after `node` in document order below `top`, or null. Only elements are entered: attributes, and what a
/// document type declaration holds, are passed over.
inline xmlNode* NextInSubtree(const xmlNode* top, const xmlNode* node) {
    if (node->type == XML_ELEMENT_NODE && node->children) return node->children;
    while (node != top && !node->next) node = node->parent;
    return node == top ? nullptr : node->next;
}

bool IsOrdinary(const xmlNode* node);
inline bool HasName(const xmlNode* node, std::string_view name) {
    return View(node->name) == name;
}
/// Null for a declaration of a namespace, which is none.
xmlAttr* FindAttribute(xmlNode* element, std::string_view name);
std::string ValueOfAttribute(const xmlNode* attribute);
/// A text node; null for an empty text. @throws std::bad_alloc
xmlNode* NewText(xmlDoc* doc, std::string_view utf8);

/// libxml2 must be set up before several threads use it.
void PrepareLibrary();

}  // namespace qv::dom
