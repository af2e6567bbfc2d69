#include <libxml/xmlmemory.h>

#include <new>

#include "xml/dom/Held.h"
#include "xml/dom/libxml2/names/Scope.h"

namespace qv::dom {
namespace {

// Elements with fewer attributes are searched linearly.
constexpr int kMany = 16;

bool HasMany(const xmlNode* element) {
    int count = 0;
    for (const xmlAttr* attribute = element->properties; attribute && count < kMany; attribute = attribute->next)
        ++count;
    return count == kMany;
}

NamedAttributes& IndexOf(Tree& tree, const xmlNode* element) {
    NamedAttributes& known = tree.attributes;
    if (known.element == element) return known;
    known = {.element = element};
    for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
        known.byName.emplace(View(attribute->name), attribute);
        known.last = attribute;
    }
    return known;
}

xmlAttr* Find(Tree& tree, xmlNode* element, std::string_view name) {
    if (tree.attributes.element != element && !HasMany(element)) return FindAttribute(element, name);
    const auto& known = IndexOf(tree, element).byName;
    const auto found = known.find(name);
    return found == known.end() ? nullptr : found->second;
}

xmlAttr* Append(Tree& tree, xmlNode* element, std::string_view name) {
    xmlAttr* const attribute = xmlNewDocProp(tree.doc, Xml(std::string(name).c_str()), nullptr);
    if (!attribute) throw std::bad_alloc();
    NamedAttributes& known = IndexOf(tree, element);
    attribute->parent = element;
    attribute->prev = known.last;
    (known.last ? known.last->next : element->properties) = attribute;
    known.last = attribute;
    known.byName.emplace(View(attribute->name), attribute);
    return attribute;
}

void SetValue(Tree& tree, xmlAttr* attribute, std::string_view value) {
    const std::unique_ptr<Node, void (*)(Node*)> node(AcquireNode(tree, AsNode(attribute)),
                                                      [](Node* held) { Release(*held); });
    SetText(*node, value);
}

// Namespace declarations have no xmlAttr to hand out. Attributes with the same name and value represent them, each an
// orphan.
IXMLDOMNode DeclarationAsAttribute(Tree& tree, const xmlNs* ns) {
    const std::string name = ns->prefix ? "xmlns:" + std::string(View(ns->prefix)) : "xmlns";
    auto* const node = AsNode(xmlNewDocProp(tree.doc, Xml(name.c_str()), nullptr));
    IXMLDOMNode attribute = HandleToOrphan(tree, node);
    SetText(attribute.Get(), View(ns->href));
    return attribute;
}

void PutUri(xmlNs* declaration, std::string_view uri) {
    xmlChar* const copy = xmlStrndup(Xml(uri.data()), static_cast<int>(uri.size()));
    if (!copy) throw std::bad_alloc();
    xmlFree(const_cast<xmlChar*>(std::exchange(declaration->href, copy)));
    declaration->_private = nullptr;  // now owned by the caller
}

// The other names that use the prefix must remain valid under its new URI.
bool SetDeclaration(Tree& tree, xmlNode* element, std::string_view prefix, std::string_view uri) {
    const xmlChar* const now = UriOf(element, prefix);
    const std::string before(View(now));
    xmlNs* declaration = FindDeclaration(element, prefix);
    const bool added = !declaration;
    if (declaration)
        PutUri(declaration, uri);
    else
        AddDeclaration(tree, element, prefix, uri);
    if (!now || prefix.empty() || before == uri || NamesHold(element)) return true;
    declaration = FindDeclaration(element, prefix);
    if (added)
        DropDeclaration(element, declaration);
    else
        PutUri(declaration, before);
    return false;
}

bool RemoveDeclaration(Tree& tree, xmlNode* element, std::string_view prefix) {
    xmlNs* const declaration = FindDeclaration(element, prefix);
    if (!declaration) return true;
    const std::string uri(View(declaration->href));
    DropDeclaration(element, declaration);
    if (prefix.empty() || NamesHold(element)) return true;
    AddDeclaration(tree, element, prefix, uri);
    return false;
}

bool MayAdd(const xmlNode* element, std::string_view name) {
    const std::string_view prefix = PrefixOf(name);
    return prefix.empty() || (UriOf(element, prefix) && !IsDuplicateAttribute(element, name));
}

}  // namespace

xmlAttr* FindAttribute(xmlNode* element, std::string_view name) {
    if (element->type != XML_ELEMENT_NODE) return nullptr;
    for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next)
        if (View(attribute->name) == name) return attribute;
    return nullptr;
}

std::vector<IXMLDOMNode> Attributes(Node& node) {
    std::vector<IXMLDOMNode> all;
    if (node.node->type != XML_ELEMENT_NODE) return all;
    for (const xmlNs* ns = node.node->nsDef; ns; ns = ns->next) all.push_back(DeclarationAsAttribute(*node.tree, ns));
    for (xmlAttr* attribute = node.node->properties; attribute; attribute = attribute->next)
        all.push_back(HandleTo(*node.tree, AsNode(attribute)));
    return all;
}

IXMLDOMNode OwnerOf(Node& attribute) {
    return HandleTo(*attribute.tree, attribute.node->parent);
}

bool GetAttribute(Node& element, std::string_view name, std::string& value) {
    if (IsDeclaration(name)) {
        const xmlNs* const declaration = FindDeclaration(element.node, DeclaredPrefix(name));
        if (declaration) value = View(declaration->href);
        return declaration;
    }
    xmlAttr* const found = Find(*element.tree, element.node, name);
    if (!found) return false;
    value = ValueOfAttribute(AsNode(found));
    return true;
}

bool SetAttribute(Node& element, std::string_view name, std::string_view value) {
    Tree& tree = *element.tree;
    if (IsDeclaration(name)) return SetDeclaration(tree, element.node, DeclaredPrefix(name), value);
    xmlAttr* attribute = Find(tree, element.node, name);
    if (!attribute && !MayAdd(element.node, name)) return false;
    if (!attribute) attribute = Append(tree, element.node, name);
    SetValue(tree, attribute, value);
    return true;
}

bool RemoveAttribute(Node& element, std::string_view name) {
    if (IsDeclaration(name)) return RemoveDeclaration(*element.tree, element.node, DeclaredPrefix(name));
    if (xmlAttr* const found = Find(*element.tree, element.node, name)) Detach(*element.tree, AsNode(found));
    return true;
}

bool CanCopyAttributes(Node& to, Node& from) {
    for (const xmlAttr* attribute = from.node->properties; attribute; attribute = attribute->next) {
        const std::string_view prefix = PrefixOf(View(attribute->name));
        const xmlChar* const uri = prefix.empty() ? nullptr : UriOf(to.node, prefix);
        if (uri && View(uri) != View(UriOf(from.node, prefix))) return false;
    }
    return true;
}

void CopyAttributes(Node& to, Node& from) {
    if (to.node == from.node) return;
    for (xmlAttr* attribute = to.node->properties; attribute;) {
        xmlAttr* const next = attribute->next;
        if (!Find(*from.tree, from.node, View(attribute->name))) Detach(*to.tree, AsNode(attribute));
        attribute = next;
    }
    for (xmlAttr* attribute = from.node->properties; attribute; attribute = attribute->next) {
        const std::string_view name = View(attribute->name), prefix = PrefixOf(name);
        const std::string value = ValueOfAttribute(AsNode(attribute));
        if (!prefix.empty() && !UriOf(to.node, prefix))
            AddDeclaration(*to.tree, to.node, prefix, View(UriOf(from.node, prefix)));
        SetAttribute(to, name, value);
    }
}

}  // namespace qv::dom
