#pragma once

/// @file The libxml2 nodes that the handles refer to.
///
/// A node with handles has one Node, in its `_private`. A Tree owns an xmlDoc and everything that belongs to it; it
/// lives as long as any Node in it. A subtree removed from the document lives on as an orphan while handles refer to
/// it.
///
/// Names are qualified: the name of an element or attribute with a prefix is "p:name", and its `ns` is null. Prefixes
/// are resolved through the declarations (`nsDef`) of the enclosing elements (names/Scope.h). So no node ever points to
/// a declaration, which may be freed before the node.

#include <libxml/tree.h>

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/KeyedHash.h"
#include "xml/dom/Backend.h"

namespace qv::dom {

/// The child elements with one name, in order, of a parent that was passed by a path with an index.
struct NamedChildren {
    std::string name;
    std::vector<xmlNode*> nodes;
};

/// An index of the attributes of the last changed element that has many.
struct NamedAttributes {
    const xmlNode* element = nullptr;
    KeyedMap<std::string_view, xmlAttr*> byName = {};
    xmlAttr* last = nullptr;
};

struct Tree {
    xmlDoc* doc;
    bool keepSpace = false;
    bool namespaces = false;  // false if it never contained a declaration
    MSXML2::IXMLDOMParseError problem = {};
    std::unordered_map<const xmlNode*, NamedChildren> children = {};  // cleared when the tree changes
    NamedAttributes attributes = {};                                  // cleared when an attribute is removed
    std::size_t nodes = 0;                                            // the number of Nodes in it
    std::unordered_map<xmlNode*, std::size_t> orphans = {};           // the root of each orphan and its number of Nodes
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

/// Returns a new reference to a node; null for null.
Node* AcquireNode(Tree& tree, xmlNode* node);
inline IXMLDOMNode HandleTo(Tree& tree, xmlNode* node) {
    return IXMLDOMNode(AcquireNode(tree, node));
}
/// The same for a new node without a parent.
IXMLDOMNode HandleToOrphan(Tree& tree, xmlNode* node);

/// Replaces a document's content with another document and what is known about it.
void ReplaceTree(Node& document, xmlDoc* doc, bool namespaces);
/// Removes a node from its parent; a subtree without handles is freed.
void Detach(Tree& tree, xmlNode* node);
/// Makes a node, which may be an orphan or have a parent, part of the tree, without a parent.
void Adopt(Tree& tree, Node& node);
/// Must be called after a node was inserted into the tree or an orphan.
void Joined(Tree& tree, xmlNode* node);

/// Returns the node after `node` in document order below `top`, or null. Only elements are entered; attributes and the
/// content of a document type declaration are skipped.
inline xmlNode* NextInSubtree(const xmlNode* top, const xmlNode* node) {
    if (node->type == XML_ELEMENT_NODE && node->children) return node->children;
    while (node != top && !node->next) node = node->parent;
    return node == top ? nullptr : node->next;
}

bool IsOrdinary(const xmlNode* node);
inline bool HasName(const xmlNode* node, std::string_view name) {
    return View(node->name) == name;
}
/// Returns null for a namespace declaration, which is not an attribute.
xmlAttr* FindAttribute(xmlNode* element, std::string_view name);
std::string ValueOfAttribute(const xmlNode* attribute);
/// Creates a text node; null for an empty text. @throws std::bad_alloc
xmlNode* NewText(xmlDoc* doc, std::string_view utf8);

/// Initializes libxml2, which must happen before several threads use it.
void PrepareLibrary();

}  // namespace qv::dom
