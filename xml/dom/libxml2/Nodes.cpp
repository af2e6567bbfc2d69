#include <libxml/parser.h>

#include <mutex>
#include <new>

#include "platform/Ascii.h"
#include "platform/Text.h"
#include "platform/Utf8.h"
#include "xml/dom/libxml2/Internals.h"

namespace qv::dom {
namespace {

Node* PrivateOf(const xmlNode* node) {
    return static_cast<Node*>(node->_private);
}

xmlNode* TopOf(xmlNode* node) {
    while (node->parent) node = node->parent;
    return node;
}

// Calls `visit` with every node of the subtree, attributes too.
template <class Visit>
void ForEachInSubtree(xmlNode* top, Visit visit) {
    for (xmlNode* node = top; node; node = NextInSubtree(top, node)) {
        visit(node);
        if (node->type != XML_ELEMENT_NODE) continue;
        for (xmlAttr* attr = node->properties; attr; attr = attr->next) visit(reinterpret_cast<xmlNode*>(attr));
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

// The orphan that the node stands in.
auto OrphanOf(Tree& tree, xmlNode* node) {
    return tree.orphans.empty() ? tree.orphans.end() : tree.orphans.find(TopOf(node));
}

// So many handles look at an orphan no more.
void ReleaseOrphan(Tree& tree, std::unordered_map<xmlNode*, std::size_t>::iterator orphan, std::size_t nodes) {
    if (orphan == tree.orphans.end() || (orphan->second -= nodes) > 0) return;
    xmlFreeNode(orphan->first);
    tree.orphans.erase(orphan);
}

// Namespaces that the node uses from outside stay with the document.
std::size_t Unlink(Tree& tree, xmlNode* node) {
    tree.children.clear();
    const std::size_t nodes = CountNodes(node);
    const auto orphan = node->parent ? OrphanOf(tree, node) : tree.orphans.end();
    xmlDOMWrapRemoveNode(nullptr, tree.doc, node, 0);
    ReleaseOrphan(tree, orphan, nodes);
    return nodes;
}

}  // namespace

std::string ToUtf8(std::string_view text) {
    if (ascii::IsAscii(text) || platform::CurrentCodePage() == platform::CodePage::Utf8) return std::string(text);
    return platform::WideToUtf8(platform::ToWide(text));
}

std::string FromUtf8(std::string_view utf8) {
    if (ascii::IsAscii(utf8) || platform::CurrentCodePage() == platform::CodePage::Utf8) return std::string(utf8);
    return platform::FromWide(platform::Utf8ToWide(utf8));
}

void PrepareLibrary() {
    static std::once_flag once;
    std::call_once(once, xmlInitParser);
}

Node* Refer(Tree& tree, xmlNode* node) {
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

void ReplaceTree(Node& document, xmlDoc* doc) {
    Tree* const old = document.tree;
    auto* const fresh = new Tree{.doc = doc, .keepSpace = old->keepSpace, .problem = {}, .nodes = 1};
    document.node->_private = nullptr;
    document.node = reinterpret_cast<xmlNode*>(doc);
    document.tree = fresh;
    doc->_private = &document;
    ForgetNode(old);
}

void Detach(Tree& tree, xmlNode* node) {
    const std::size_t nodes = Unlink(tree, node);
    if (nodes == 0)
        xmlFreeNode(node);
    else
        tree.orphans.emplace(node, nodes);
}

void Adopt(Tree& tree, Node& node, xmlNode* parent) {
    Tree* const from = node.tree;
    Unlink(*from, node.node);
    from->orphans.erase(node.node);
    if (from == &tree) return;
    if (xmlDOMWrapAdoptNode(nullptr, from->doc, node.node, tree.doc, parent, 0) != 0) throw std::bad_alloc();
    std::size_t moved = 0;
    ForEachInSubtree(node.node, [&](const xmlNode* inside) {
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
    tree.children.clear();
    const auto orphan = OrphanOf(tree, node);
    if (orphan != tree.orphans.end()) orphan->second += CountNodes(node);
}

}  // namespace qv::dom
