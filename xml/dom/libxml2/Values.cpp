#include <new>

#include "xml/dom/Characters.h"
#include "xml/dom/libxml2/names/Scope.h"

namespace qv::dom {
namespace {

std::string_view Trimmed(std::string_view text, bool left, bool right) {
    if (left) text = ascii::TrimmedLeft(text, IsSpace);
    return right ? ascii::TrimmedRight(text, IsSpace) : text;
}

bool IsText(const xmlNode* node) {
    return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
}

// The concatenated texts below a node, and whether the outermost ones may be trimmed.
struct Gathered {
    std::string text;
    bool trimLeft = true, trimRight = true;
};

Gathered Gather(const xmlNode* top) {
    Gathered all;
    for (const xmlNode* node = top; node; node = NextInSubtree(top, node)) {
        if (!IsText(node) || !node->content) continue;
        const bool exact = node->type == XML_CDATA_SECTION_NODE;
        if (all.text.empty()) all.trimLeft = !exact;
        if (*node->content) all.trimRight = !exact;
        all.text += View(node->content);
    }
    return all;
}

bool KeepsSpace(const Tree& tree, const xmlNode* element) {
    if (tree.keepSpace) return true;
    for (; element && element->type == XML_ELEMENT_NODE; element = element->parent)
        for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next)
            if (View(attribute->name) == "xml:space")
                return ValueOfAttribute(AsNode(const_cast<xmlAttr*>(attribute))) == "preserve";
    return false;
}

bool HasSpaceAtEnds(std::string_view text) {
    return !text.empty() && (IsSpace(text.front()) || IsSpace(text.back()));
}

bool IsPlainText(const xmlNode* node) {
    return node && !node->next && node->type == XML_TEXT_NODE;
}

// The fast path is by far the most frequent case: an element with one text.
std::string TextOfElement(const Tree& tree, xmlNode* node) {
    if (IsPlainText(node->children)) {
        const std::string_view text = View(node->children->content);
        return std::string(HasSpaceAtEnds(text) && !KeepsSpace(tree, node) ? Trimmed(text, true, true) : text);
    }
    Gathered all = Gather(node);
    if (!HasSpaceAtEnds(all.text) || KeepsSpace(tree, node)) return std::move(all.text);
    return std::string(Trimmed(all.text, all.trimLeft, all.trimRight));
}

void SetContent(Tree& tree, xmlNode* parent, std::string_view utf8) {
    while (parent->children) Detach(tree, parent->children);
    xmlNode* const text = NewText(tree.doc, utf8);
    if (!text) return;
    text->parent = parent;
    parent->children = parent->last = text;
}

xmlChar* Copy(std::string_view text) {
    xmlChar* const copy = xmlStrndup(Xml(text.data()), static_cast<int>(text.size()));
    if (!copy) throw std::bad_alloc();
    return copy;
}

void SetOwnText(xmlNode* node, std::string_view text) {
    xmlChar* const copy = Copy(text);
    xmlNodeSetContent(node, nullptr);  // frees the old content
    node->content = copy;
}

}  // namespace

std::string ValueOfAttribute(const xmlNode* attribute) {
    std::string text;
    for (const xmlNode* part = attribute->children; part; part = part->next) text += View(part->content);
    return text;
}

xmlNode* NewText(xmlDoc* doc, std::string_view utf8) {
    if (utf8.empty()) return nullptr;
    xmlNode* const text = xmlNewDocTextLen(doc, Xml(utf8.data()), static_cast<int>(utf8.size()));
    if (!text) throw std::bad_alloc();
    return text;
}

DOMNodeType TypeOf(Node& node) {
    const xmlElementType type = node.node->type;
    return type == XML_DTD_NODE ? MSXML2::NODE_DOCUMENT_TYPE : static_cast<DOMNodeType>(type);
}

std::string NameOf(Node& node) {
    switch (node.node->type) {
        case XML_TEXT_NODE: return "#text";
        case XML_CDATA_SECTION_NODE: return "#cdata-section";
        case XML_COMMENT_NODE: return "#comment";
        case XML_DOCUMENT_NODE: return "#document";
        default: return std::string(View(node.node->name));
    }
}

std::string ValueOf(Node& node) {
    switch (node.node->type) {
        case XML_ATTRIBUTE_NODE: return ValueOfAttribute(node.node);
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
        case XML_COMMENT_NODE:
        case XML_PI_NODE: return std::string(View(node.node->content));
        default: return "";
    }
}

std::string NamespaceOf(Node& node) {
    const xmlElementType type = node.node->type;
    const bool named = type == XML_ATTRIBUTE_NODE || (type == XML_ELEMENT_NODE && node.tree->namespaces);
    return named ? std::string(View(NamespaceUri(node.node))) : "";
}

std::string TextOf(Node& node) {
    const xmlElementType type = node.node->type;
    if (type == XML_ELEMENT_NODE) return TextOfElement(*node.tree, node.node);
    if (type != XML_DOCUMENT_NODE) return ValueOf(node);
    xmlNode* const root = xmlDocGetRootElement(node.tree->doc);
    return root ? TextOfElement(*node.tree, root) : "";
}

void SetText(Node& node, std::string_view text) {
    switch (node.node->type) {
        case XML_ELEMENT_NODE:
        case XML_ATTRIBUTE_NODE: return SetContent(*node.tree, node.node, text);
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
        case XML_COMMENT_NODE: return SetOwnText(node.node, text);
        default: _com_raise_error(_com_error::kFail, "the node has no text of its own");
    }
}

}  // namespace qv::dom
