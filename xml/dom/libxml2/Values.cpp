#include <new>

#include "xml/dom/Characters.h"
#include "xml/dom/libxml2/Internals.h"

namespace qv::dom {
namespace {

std::string_view Trimmed(std::string_view text, bool left, bool right) {
    if (left) text = ascii::TrimmedLeft(text, IsSpace);
    return right ? ascii::TrimmedRight(text, IsSpace) : text;
}

bool IsText(const xmlNode* node) {
    return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
}

xmlAttr* AsAttribute(xmlNode* node) {
    return reinterpret_cast<xmlAttr*>(node);
}

// The texts below a node, one after the other, and whether the outermost ones may be trimmed.
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

// Declarations of namespaces have no node of their own: they are handed out as attributes of the element.
std::string AttributeValue(xmlNode* attribute) {
    Gathered all;
    for (const xmlNode* part = AsAttribute(attribute)->children; part; part = part->next)
        all.text += View(part->content);
    return all.text;
}

bool IsPlainText(const xmlNode* node) {
    return node && !node->next && node->type == XML_TEXT_NODE;
}

// The most frequent case by far: an element that holds one text.
std::string TextOfElement(const Tree& tree, xmlNode* node) {
    const bool keep = tree.keepSpace || xmlNodeGetSpacePreserve(node) == 1;
    if (IsPlainText(node->children)) {
        return FromUtf8(Trimmed(View(node->children->content), !keep, !keep));
    }
    const Gathered all = Gather(node);
    return FromUtf8(Trimmed(all.text, !keep && all.trimLeft, !keep && all.trimRight));
}

xmlNode* NewText(Tree& tree, const std::string& utf8) {
    xmlNode* const text = xmlNewDocTextLen(tree.doc, Xml(utf8.data()), static_cast<int>(utf8.size()));
    if (!text) throw std::bad_alloc();
    return text;
}

void SetContent(Tree& tree, xmlNode* parent, const std::string& utf8) {
    while (parent->children) Detach(tree, parent->children);
    if (utf8.empty()) return;
    xmlNode* const text = NewText(tree, utf8);
    text->parent = parent;
    parent->children = parent->last = text;
}

}  // namespace

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
        case XML_ATTRIBUTE_NODE: return FromUtf8(QualifiedName(AsAttribute(node.node)->ns, node.node->name));
        case XML_ELEMENT_NODE: return FromUtf8(QualifiedName(node.node->ns, node.node->name));
        default: return FromUtf8(View(node.node->name));
    }
}

std::string ValueOf(Node& node) {
    switch (node.node->type) {
        case XML_ATTRIBUTE_NODE: return FromUtf8(AttributeValue(node.node));
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
        case XML_COMMENT_NODE:
        case XML_PI_NODE: return FromUtf8(View(node.node->content));
        default: return "";
    }
}

std::string NamespaceOf(Node& node) {
    const xmlNs* ns = nullptr;
    if (node.node->type == XML_ELEMENT_NODE) ns = node.node->ns;
    if (node.node->type == XML_ATTRIBUTE_NODE) ns = AsAttribute(node.node)->ns;
    return ns ? FromUtf8(View(ns->href)) : "";
}

std::string TextOf(Node& node) {
    const xmlElementType type = node.node->type;
    if (type == XML_ELEMENT_NODE) return TextOfElement(*node.tree, node.node);
    if (type != XML_DOCUMENT_NODE) return ValueOf(node);
    xmlNode* const root = xmlDocGetRootElement(node.tree->doc);
    return root ? TextOfElement(*node.tree, root) : "";
}

void SetText(Node& node, std::string_view text) {
    const std::string utf8 = ToUtf8(text);
    switch (node.node->type) {
        case XML_ELEMENT_NODE:
        case XML_ATTRIBUTE_NODE: return SetContent(*node.tree, node.node, utf8);
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
        case XML_COMMENT_NODE: return xmlNodeSetContentLen(node.node, Xml(utf8.data()), static_cast<int>(utf8.size()));
        default: _com_raise_error(_com_error::kFail, "the node has no text of its own");
    }
}

bool GetAttribute(Node& element, std::string_view name, CString& value) {
    xmlAttr* const found = FindAttribute(element.node, ToUtf8(name));
    if (!found) return false;
    value = CString(FromUtf8(AttributeValue(reinterpret_cast<xmlNode*>(found))));
    return true;
}

void SetAttribute(Node& element, std::string_view name, std::string_view value) {
    const std::string qualified = ToUtf8(name);
    xmlAttr* attribute = FindAttribute(element.node, qualified);
    if (!attribute) {
        const std::size_t colon = qualified.find(':');
        const std::string prefix = qualified.substr(0, colon == qualified.npos ? 0 : colon);
        xmlNs* const ns = prefix.empty() ? nullptr : xmlSearchNs(element.tree->doc, element.node, Xml(prefix.c_str()));
        const std::string& local = ns ? qualified.substr(colon + 1) : qualified;
        attribute = xmlNewNsProp(element.node, ns, Xml(local.c_str()), nullptr);
        if (!attribute) throw std::bad_alloc();
    }
    SetContent(*element.tree, reinterpret_cast<xmlNode*>(attribute), ToUtf8(value));
}

void RemoveAttribute(Node& element, std::string_view name) {
    if (xmlAttr* const found = FindAttribute(element.node, ToUtf8(name)))
        Detach(*element.tree, reinterpret_cast<xmlNode*>(found));
}

}  // namespace qv::dom
