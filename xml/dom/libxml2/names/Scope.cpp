#include "xml/dom/libxml2/names/Scope.h"

#include <new>
#include <set>

#include "xml/dom/Held.h"

namespace qv::dom {
namespace {

// Marks declarations that were added by moves.
char g_carried;

std::string_view NameOfNode(const xmlNode* node) {
    return View(node->name);
}

// The prefixes that a subtree uses without declaring them, each once.
class FreePrefixes {
public:
    std::vector<std::string_view> Collect(const xmlNode* top) {
        Visit(top);
        return std::move(m_free);
    }

private:
    void Visit(const xmlNode* element) {
        for (const xmlNs* ns = element->nsDef; ns; ns = ns->next) ++m_declared[View(ns->prefix)];
        Use(PrefixOf(NameOfNode(element)));
        for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next)
            if (const std::string_view prefix = PrefixOf(View(attribute->name)); !prefix.empty()) Use(prefix);
        for (const xmlNode* child = element->children; child; child = child->next)
            if (child->type == XML_ELEMENT_NODE) Visit(child);
        for (const xmlNs* ns = element->nsDef; ns; ns = ns->next) --m_declared[View(ns->prefix)];
    }

    void Use(std::string_view prefix) {
        if (prefix == "xml") return;
        int& count = m_declared[prefix];
        if (count > 0 || !m_seen.emplace(prefix, true).second) return;
        m_free.push_back(prefix);
    }

    KeyedMap<std::string_view, int> m_declared;
    KeyedMap<std::string_view, bool> m_seen;
    std::vector<std::string_view> m_free;
};

bool AttributesDiffer(const xmlNode* element) {
    std::set<std::pair<std::string_view, std::string_view>> names;
    for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
        const std::string_view name = View(attribute->name), prefix = PrefixOf(name);
        if (prefix.empty()) continue;
        const xmlChar* const uri = UriOf(element, prefix);
        if (!uri || !names.emplace(View(uri), LocalPartOf(name)).second) return false;
    }
    return true;
}

void DropRepeated(xmlNode* top) {
    for (xmlNs* ns = top->nsDef; ns;) {
        xmlNs* const next = ns->next;
        const bool repeats = ns->_private == &g_carried && View(UriOf(top->parent, View(ns->prefix))) == View(ns->href);
        if (repeats) DropDeclaration(top, ns);
        ns = next;
    }
}

}  // namespace

const xmlChar* UriOf(const xmlNode* node, std::string_view prefix) {
    if (prefix == "xml") return XML_XML_NAMESPACE;
    for (; node && node->type == XML_ELEMENT_NODE; node = node->parent)
        if (const xmlNs* const ns = FindDeclaration(node, prefix)) return ns->href;
    return nullptr;
}

const xmlChar* NamespaceUri(const xmlNode* node) {
    const std::string_view prefix = PrefixOf(NameOfNode(node));
    if (node->type == XML_ELEMENT_NODE) return UriOf(node, prefix);
    return prefix.empty() ? nullptr : UriOf(node->parent, prefix);
}

xmlNs* FindDeclaration(const xmlNode* element, std::string_view prefix) {
    for (xmlNs* ns = element->nsDef; ns; ns = ns->next)
        if (View(ns->prefix) == prefix) return ns;
    return nullptr;
}

void AddDeclaration(Tree& tree, xmlNode* element, std::string_view prefix, std::string_view uri) {
    xmlNs* const ns =
        xmlNewNs(nullptr, Xml(std::string(uri).c_str()), prefix.empty() ? nullptr : Xml(std::string(prefix).c_str()));
    if (!ns) throw std::bad_alloc();
    xmlNs** end = &element->nsDef;
    while (*end) end = &(*end)->next;
    *end = ns;
    tree.namespaces = true;
}

void DropDeclaration(xmlNode* element, xmlNs* declaration) {
    xmlNs** at = &element->nsDef;
    while (*at != declaration) at = &(*at)->next;
    *at = declaration->next;
    xmlFreeNs(declaration);
}

std::vector<Binding> BindingsOf(const Tree& tree, const xmlNode* top) {
    std::vector<Binding> bindings;
    if (top->type != XML_ELEMENT_NODE) return bindings;
    if (!tree.namespaces) return {{"", ""}};
    for (const std::string_view prefix : FreePrefixes().Collect(top))
        bindings.push_back({std::string(prefix), std::string(View(UriOf(top->parent, prefix)))});
    return bindings;
}

void Settle(Tree& tree, xmlNode* top, const std::vector<Binding>& bindings) {
    if (top->type != XML_ELEMENT_NODE) return;
    if (top->parent && top->nsDef) DropRepeated(top);
    for (const Binding& binding : bindings) {
        if (binding.uri.empty() && (!tree.namespaces || !binding.prefix.empty())) continue;
        if (FindDeclaration(top, binding.prefix)) continue;
        if (View(UriOf(top->parent, binding.prefix)) == binding.uri) continue;
        AddDeclaration(tree, top, binding.prefix, binding.uri);
        FindDeclaration(top, binding.prefix)->_private = &g_carried;
    }
}

bool NamesHold(xmlNode* top) {
    for (const xmlNode* node = top; node; node = NextInSubtree(top, node)) {
        if (node->type != XML_ELEMENT_NODE) continue;
        const std::string_view prefix = PrefixOf(NameOfNode(node));
        if ((!prefix.empty() && !UriOf(node, prefix)) || !AttributesDiffer(node)) return false;
    }
    return true;
}

bool IsDuplicateAttribute(const xmlNode* element, std::string_view attribute) {
    const std::string_view uri = View(UriOf(element, PrefixOf(attribute)));
    for (const xmlAttr* other = element->properties; other; other = other->next) {
        const std::string_view name = View(other->name), prefix = PrefixOf(name);
        if (!prefix.empty() && LocalPartOf(name) == LocalPartOf(attribute) && View(UriOf(element, prefix)) == uri)
            return true;
    }
    return false;
}

}  // namespace qv::dom
