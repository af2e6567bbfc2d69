#pragma once

/// @file The meaning of prefixes at a node.

#include "xml/dom/libxml2/Internals.h"

namespace qv::dom {

/// Returns the URI of a prefix, "" for the default namespace, at a node; null if it is not declared.
const xmlChar* UriOf(const xmlNode* node, std::string_view prefix);
/// Returns the namespace of an element's or attribute's name; null if it has none.
const xmlChar* NamespaceUri(const xmlNode* node);

/// Returns the declaration at the element itself, or null.
xmlNs* FindDeclaration(const xmlNode* element, std::string_view prefix);
void AddDeclaration(Tree& tree, xmlNode* element, std::string_view prefix, std::string_view uri);
void DropDeclaration(xmlNode* element, xmlNs* declaration);

/// A prefix that a subtree uses without declaring it, possibly "", and its URI, "" if it has none.
struct Binding {
    std::string prefix, uri;
};
std::vector<Binding> BindingsOf(const Tree& tree, const xmlNode* top);
/// Declares at an element the bindings that differ or are missing at its new position. Declarations added by earlier
/// moves that are now redundant are removed.
void Settle(Tree& tree, xmlNode* top, const std::vector<Binding>& bindings);

/// Whether every prefix below `top` is declared, and no element has two attributes with one name in one namespace.
bool NamesHold(xmlNode* top);
/// The second check only, for one more attribute.
bool IsDuplicateAttribute(const xmlNode* element, std::string_view attribute);

}  // namespace qv::dom
