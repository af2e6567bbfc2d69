#include <libxml/parser.h>

#include <algorithm>
#include <mutex>
#include <new>

#include "xml/dom/libxml2/names/Scope.h"

namespace qv::dom {
namespace {

Node* PrivateOf(const xmlNode* node) {
    return static_cast<Node*>(node->_private);
}

xmlNode* TopOf(xmlNode* node) {
    while (node->parent) node = node->parent;
    return node;
}

// Calls `visit` with every node of the subtree, including attributes.
template <class Visit>
void ForEachInSubtree(xmlNode* top, Visit visit) {
    for (xmlNode* node = top; node; node = NextInSubtree(top, node)) {
        visit(node);
        if (node->type != XML_ELEMENT_NODE) continue;
        for (xmlAttr* attr = node->properties; attr; attr = attr->next) visit(AsNode(attr));
    }
}

std::size_t CountNodes(xmlNode* top) {
    std::size_t count = 0;
    ForEachInSubtree(top, [&](const xmlNode* node) { count += node->_private != nullptr; });
    return count;
}

void DropTree(Tree* tree) {
    for (const auto& [top, count] : tree->orphans) xmlFreeNode(top);
    xmlFreeDoc(tree->doc);
    delete tree;
}

void ForgetNode(Tree* tree) {
    if (--tree->nodes == 0) DropTree(tree);
}

// Returns the orphan that contains the node.
auto OrphanOf(Tree& tree, xmlNode* node) {
    return tree.orphans.empty() ? tree.orphans.end() : tree.orphans.find(TopOf(node));
}

// Forgets what is cached about elements.
void ForgetElements(Tree& tree) {
    tree.children = {};  // clear() is O(n) in the number of its buckets
    tree.attributes = {};
}

// Subtracts `nodes` from an orphan's count and frees the orphan at 0.
void ReleaseOrphan(Tree& tree, std::unordered_map<xmlNode*, std::size_t>::iterator orphan, std::size_t nodes) {
    if (orphan == tree.orphans.end() || (orphan->second -= nodes) > 0) return;
    // A new element may get the address of one that is freed here.
    if (orphan->first->type != XML_ATTRIBUTE_NODE) ForgetElements(tree);
    xmlFreeNode(orphan->first);
    tree.orphans.erase(orphan);
}

void ForgetAttribute(NamedAttributes& known, xmlAttr* attribute) {
    if (known.element != attribute->parent) return;
    known.byName.erase(View(attribute->name));
    if (known.last == attribute) known.last = attribute->prev;
}

// Returns the number of Nodes in the unlinked subtree.
std::size_t Unlink(Tree& tree, xmlNode* node) {
    if (node->type == XML_ELEMENT_NODE) ForgetElements(tree);
    if (node->type == XML_ATTRIBUTE_NODE && node->parent)
        ForgetAttribute(tree.attributes, reinterpret_cast<xmlAttr*>(node));
    const std::size_t nodes = CountNodes(node);
    const auto orphan = node->parent ? OrphanOf(tree, node) : tree.orphans.end();
    xmlUnlinkNode(node);
    ReleaseOrphan(tree, orphan, nodes);
    return nodes;
}

// Returns a string that lives as long as the dictionary of the other document.
const xmlChar* Moved(const xmlChar* text, xmlDict* from, xmlDict* to) {
    if (!text || !from || !xmlDictOwns(from, text)) return text;
    const xmlChar* const copy = to ? xmlDictLookup(to, text, -1) : xmlStrdup(text);
    if (!copy) throw std::bad_alloc();
    return copy;
}

void MoveToDocument(xmlNode* node, xmlDoc* from, xmlDoc* to) {
    node->doc = to;
    node->name = Moved(node->name, from->dict, to->dict);
    if (node->type == XML_ATTRIBUTE_NODE) {
        for (xmlNode* text = node->children; text; text = text->next) MoveToDocument(text, from, to);
    } else if (node->type != XML_ELEMENT_NODE) {
        // Short texts are stored in the node itself, others may be shared in the dictionary.
        node->content = const_cast<xmlChar*>(Moved(node->content, from->dict, to->dict));
    }
}

}  // namespace

void PrepareLibrary() {
    static std::once_flag once;
    std::call_once(once, xmlInitParser);
}

Node* AcquireNode(Tree& tree, xmlNode* node) {
    if (!node) return nullptr;
    if (Node* const known = PrivateOf(node)) {
        ++known->references;
        return known;
    }
    const auto orphan = OrphanOf(tree, node);
    auto* const fresh = new Node{node, &tree, 1};
    if (orphan != tree.orphans.end()) ++orphan->second;
    ++tree.nodes;
    node->_private = fresh;
    return fresh;
}

IXMLDOMNode HandleToOrphan(Tree& tree, xmlNode* node) {
    if (!node) throw std::bad_alloc();
    tree.orphans.emplace(node, 0);
    return HandleTo(tree, node);
}

void Retain(Node& node) noexcept {
    ++node.references;
}

void Release(Node& node) noexcept {
    if (--node.references > 0) return;
    Tree* const tree = node.tree;
    node.node->_private = nullptr;
    ReleaseOrphan(*tree, OrphanOf(*tree, node.node), 1);
    delete &node;
    ForgetNode(tree);
}

bool SameNode(Node& a, Node& b) {
    return a.node == b.node;
}

bool Holds(Node& outer, Node& inner) {
    for (const xmlNode* node = inner.node; node; node = node->parent)
        if (node == outer.node) return true;
    return false;
}

int DepthOf(Node& node) {
    int depth = 0;
    for (const xmlNode* at = node.node; at; at = at->parent) depth += at->type == XML_ELEMENT_NODE;
    return depth;
}

int HeightOf(Node& node) {
    const xmlNode* const top = node.node;
    const xmlNode* at = top;
    for (int depth = 0, height = 0;;) {
        if (at->type == XML_ELEMENT_NODE) height = std::max(height, depth + 1);
        if (at->type == XML_ELEMENT_NODE && at->children) {
            at = at->children;
            ++depth;
            continue;
        }
        for (; at != top && !at->next; at = at->parent) --depth;
        if (at == top) return height;
        at = at->next;
    }
}

std::vector<int> IndexesAmong(Node& parent, std::span<const IXMLDOMNode> known) {
    std::unordered_map<const xmlNode*, int> places;
    for (const IXMLDOMNode& node : known) places.emplace(node.Get().node, static_cast<int>(places.size()));
    std::vector<int> indexes;
    for (const xmlNode* child = parent.node->children; child; child = child->next) {
        if (child->type != XML_ELEMENT_NODE) continue;
        const auto place = places.find(child);
        indexes.push_back(place == places.end() ? -1 : place->second);
    }
    return indexes;
}

void ReplaceTree(Node& document, xmlDoc* doc, bool namespaces) {
    Tree* const old = document.tree;
    auto* const fresh = new Tree{.doc = doc, .keepSpace = old->keepSpace, .namespaces = namespaces, .nodes = 1};
    document.node->_private = nullptr;
    document.node = reinterpret_cast<xmlNode*>(doc);
    document.tree = fresh;
    doc->_private = &document;
    ForgetNode(old);
}

// The remaining subtree keeps the meaning of its prefixes.
void Detach(Tree& tree, xmlNode* node) {
    const bool visible = CountNodes(node) > 0;
    const std::vector<Binding> bindings = visible ? BindingsOf(tree, node) : std::vector<Binding>();
    const std::size_t nodes = Unlink(tree, node);
    if (nodes == 0) return xmlFreeNode(node);
    Settle(tree, node, bindings);
    tree.orphans.emplace(node, nodes);
}

void Adopt(Tree& tree, Node& node) {
    Tree* const from = node.tree;
    Unlink(*from, node.node);
    from->orphans.erase(node.node);
    if (from == &tree) return;
    tree.namespaces |= from->namespaces;
    std::size_t moved = 0;
    ForEachInSubtree(node.node, [&](xmlNode* inside) {
        MoveToDocument(inside, from->doc, tree.doc);
        if (Node* const known = PrivateOf(inside)) {
            known->tree = &tree;
            ++moved;
        }
    });
    tree.nodes += moved;
    from->nodes -= moved - 1;
    ForgetNode(from);
}

void Joined(Tree& tree, xmlNode* node) {
    if (node->type == XML_ELEMENT_NODE) tree.children = {};
    const auto orphan = OrphanOf(tree, node);
    if (orphan != tree.orphans.end()) orphan->second += CountNodes(node);
}

}  // namespace qv::dom
