#pragma once

/// @file What the DOM handles ask of a DOM. libxml2/ and msxml/ answer, file by file; the handles have checked before that
/// names and texts can be held, that no handle is null, and that no node would come to stand inside itself.
///
/// Texts are in the process's code page. A failure raises _com_error.

#include <memory>
#include <span>

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
IXMLDOMNode CreateElement(Node& document, std::string_view tag);

// Values (Values.cpp)

DOMNodeType TypeOf(Node& node);
std::string NameOf(Node& node);
std::string ValueOf(Node& node);
std::string NamespaceOf(Node& node);
std::string TextOf(Node& node);
void SetText(Node& node, std::string_view text);
bool GetAttribute(Node& element, std::string_view name, CString& value);
void SetAttribute(Node& element, std::string_view name, std::string_view value);
void RemoveAttribute(Node& element, std::string_view name);

// The tree (Tree.cpp)

IXMLDOMNode Parent(Node& node);
IXMLDOMNode FirstChild(Node& node);
IXMLDOMNode NextSibling(Node& node);
IXMLDOMNode PreviousSibling(Node& node);
Node* OwnerDocument(Node& node);
std::vector<IXMLDOMNode> Attributes(Node& node);
/// `reference` is a child of `parent`, or null for the end.
void Insert(Node& parent, Node& child, Node* reference);
void Remove(Node& parent, Node& child);

// Paths (Select.cpp)

/// The first node, or null.
IXMLDOMNode SelectFirst(Node& context, std::string_view path);
std::vector<IXMLDOMNode> SelectAll(Node& context, std::string_view path);

}  // namespace qv::dom
