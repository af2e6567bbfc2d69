#pragma once

/// @file What the DOM handles ask of a DOM. libxml2/ and msxml/ answer, file by file; the handles have checked before that
/// names and texts can be held, that no handle is null, and that no node would come to stand inside itself or too deep.
///
/// Texts are UTF-8, so that nothing is lost between nodes, whatever the code page. A failure raises _com_error.

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
/// True when `inner` is `outer` or stands somewhere below it.
bool Holds(Node& outer, Node& inner);
/// For each child element of `parent`, in order, the index of the handle to it among `known`, or -1. Linear.
std::vector<int> IndexesAmong(Node& parent, std::span<const IXMLDOMNode> known);
/// How many elements a node stands in, itself included.
int DepthOf(Node& node);
/// How many elements stand in each other from a node down, itself included.
int HeightOf(Node& node);

// Documents (Document.cpp)

/// Null, with the reason in `error`, when the system has no DOM.
Node* CreateDocument(HRESULT& error);
void SetAsync(Node& document, bool async);
void SetValidate(Node& document, bool validate);
void SetKeepSpace(Node& document, bool keep);
/// Empties the document; then it is up to the caller to say why.
void SetProblem(Node& document, const IXMLDOMParseError& problem);
IXMLDOMParseError Problem(Node& document);
bool LoadText(Node& document, std::string_view text);
bool LoadBytes(Node& document, std::string_view bytes);
std::string Save(Node& document);
IXMLDOMNode DocumentElement(Node& document);
/// An element that is not in a tree yet. A prefix means what it means at `scope`; without one it is in no namespace.
/// Null when the prefix is not declared there.
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
/// The element that an attribute stands at; null when it stands nowhere.
IXMLDOMNode OwnerOf(Node& attribute);
bool GetAttribute(Node& element, std::string_view name, std::string& value);
/// False, and nothing changed, for a prefix that is not declared, and for a declaration under which names that stand there
/// would have none, or two attributes of an element the same.
bool SetAttribute(Node& element, std::string_view name, std::string_view value);
bool RemoveAttribute(Node& element, std::string_view name);
/// Gives an element the attributes of another, and no more. Declarations of namespaces are no attributes here.
void CopyAttributes(Node& to, Node& from);

// The tree (Tree.cpp)

IXMLDOMNode Parent(Node& node);
IXMLDOMNode FirstChild(Node& node);
IXMLDOMNode NextSibling(Node& node);
IXMLDOMNode PreviousSibling(Node& node);
Node* OwnerDocument(Node& node);
/// `reference` is a child of `parent`, or null for the end.
void Insert(Node& parent, Node& child, Node* reference);
void Remove(Node& parent, Node& child);
/// A copy with all below it, which is not in a tree yet.
IXMLDOMNode Clone(Node& node);

// Paths (Select.cpp)

/// The first node, or null.
IXMLDOMNode SelectFirst(Node& context, std::string_view path);
std::vector<IXMLDOMNode> SelectAll(Node& context, std::string_view path);

}  // namespace qv::dom
