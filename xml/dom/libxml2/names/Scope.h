#pragma once

/// @file What prefixes mean where a node stands.

#include "xml/dom/libxml2/Internals.h"

namespace qv::dom {

/// The URI that a prefix, "" for the default namespace, stands for at a node; null where it is not declared.
const xmlChar* UriOf(const xmlNode* node, std::string_view prefix);
/// The namespace of an element's or attribute's name; null for none.
const xmlChar* NamespaceUri(const xmlNode* node);

/// The declaration that stands at the element itself, or null.
xmlNs* FindDeclaration(const xmlNode* element, std::string_view prefix);
void AddDeclaration(Tree& tree, xmlNode* element, std::string_view prefix, std::string_view uri);
void DropDeclaration(xmlNode* element, xmlNs* declaration);

/// What a subtree relies on from outside: its prefixes that are not declared in it, "" among them, and their URIs, "" for
/// none.
struct Binding {
    std::string prefix, uri;
};
std::vector<Binding> BindingsOf(const Tree& tree, const xmlNode* top);
/// Declares at an element what is otherwise at the place where it has come to stand, or no longer at all. Earlier
/// declarations of this kind that repeat the place's own are dropped.
void Settle(Tree& tree, xmlNode* top, const std::vector<Binding>& bindings);

/// True when every prefix below `top` is declared, and no element has two attributes of one name in one namespace.
bool NamesHold(xmlNode* top);
/// The second half, for one more attribute.
bool MeansAnother(const xmlNode* element, std::string_view attribute);

}  // namespace qv::dom
