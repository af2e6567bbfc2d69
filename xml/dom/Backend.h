#pragma once

/// @file The DOM backend below the handles, implemented by libxml2/ and msxml/ file by file. The handles have checked
/// that names and texts are valid, that no handle is null, and that no node would become its own descendant or exceed
/// the depth limit.
///
/// Texts are UTF-8, so no character is lost between nodes in any code page. Failures raise _com_error.

#include <memory>
#include <span>
#include <string>

#include "qvcommon/XmlDom.h"
#include "xml/dom/Path.h"

namespace qv::dom {

using MSXML2::DOMNodeType;
using MSXML2::IXMLDOMNode;
using MSXML2::IXMLDOMParseError;

// References (Nodes.cpp)

void Retain(Node& node) noexcept;
void Release(Node& node) noexcept;
bool SameNode(Node& a, Node& b);
/// Whether `inner` is `outer` or one of its descendants.
bool Holds(Node& outer, Node& inner);
/// Returns, for each child element of `parent` in order, the index of its handle in `known`, or -1. O(n).
std::vector<int> IndexesAmong(Node& parent, std::span<const IXMLDOMNode> known);
/// Returns the number of elements on the path to a node, including itself.
int DepthOf(Node& node);
/// Returns the height of the subtree in elements, including the node itself.
int HeightOf(Node& node);

// Documents (Document.cpp)

/// Returns null, with the reason in `error`, if the system has no DOM.
Node* CreateDocument(HRESULT& error);
void SetAsync(Node& document, bool async);
void SetValidate(Node& document, bool validate);
void SetKeepSpace(Node& document, bool keep);
/// Empties the document and sets its parse error.
void SetProblem(Node& document, const IXMLDOMParseError& problem);
IXMLDOMParseError Problem(Node& document);
bool LoadText(Node& document, std::string_view text);
bool LoadBytes(Node& document, std::string_view bytes);
std::string Save(Node& document);
IXMLDOMNode DocumentElement(Node& document);
/// Creates an element that is in no tree yet. Its prefix is resolved at `scope`; without a prefix it has no namespace.
/// Returns null if the prefix is not declared there.
IXMLDOMNode CreateElement(Node& document, std::string_view tag, Node* scope);

// Values (Values.cpp)

DOMNodeType TypeOf(Node& node);
std::string NameOf(Node& node);
std::string ValueOf(Node& node);
std::string NamespaceOf(Node& node);
std::string TextOf(Node& node);
void SetText(Node& node, std::string_view text);

// Attributes (Attributes.cpp)

std::vector<IXMLDOMNode> Attributes(Node& node);
/// Returns the element that owns an attribute; null if it has no owner.
IXMLDOMNode OwnerOf(Node& attribute);
bool GetAttribute(Node& element, std::string_view name, std::string& value);
/// Returns false and changes nothing if the prefix is not declared, or if a declaration would leave a name there
/// without a namespace or make two attributes of an element equal.
bool SetAttribute(Node& element, std::string_view name, std::string_view value);
bool RemoveAttribute(Node& element, std::string_view name);
/// Whether each prefix of an attribute of `from` has the same namespace at `to`, or none.
bool CanCopyAttributes(Node& to, Node& from);
/// Replaces an element's attributes by those of another, for which CanCopyAttributes must be true. Namespace
/// declarations are not attributes here; missing ones are added.
void CopyAttributes(Node& to, Node& from);

// The tree (Tree.cpp)

IXMLDOMNode Parent(Node& node);
IXMLDOMNode FirstChild(Node& node);
IXMLDOMNode NextSibling(Node& node);
IXMLDOMNode PreviousSibling(Node& node);
Node* OwnerDocument(Node& node);
/// Whether a child of a document precedes its document type declaration.
bool IsBeforeType(Node& child);
/// Inserts before `reference`, a child of `parent`, or at the end if it is null.
void Insert(Node& parent, Node& child, Node* reference);
void Remove(Node& parent, Node& child);
/// Returns a deep copy that is in no tree yet.
IXMLDOMNode Clone(Node& node);

// Paths (Select.cpp)

/// Returns the first node, or null.
IXMLDOMNode SelectFirst(Node& context, std::string_view path);
std::vector<IXMLDOMNode> SelectAll(Node& context, std::string_view path);

}  // namespace qv::dom
