#include <algorithm>

#include "qvcommon/XmlDom.h"
#include "xml/dom/Backend.h"
#include "xml/dom/CodePage.h"
#include "xml/dom/Held.h"
#include "xml/dom/Markup.h"

namespace MSXML2 {
namespace {

namespace dom = qv::dom;

constexpr const char* kCannotHold = "XML cannot hold this text";

void Require(bool holds, const char* what) {
    if (!holds) _com_raise_error(_com_error::kInvalidArg, what);
}

// Returns the text in UTF-8, with CR LF as LF.
std::string HeldText(const IXMLDOMNode& node, std::string_view text) {
    Require(text.size() <= dom::kLongestText, kCannotHold);
    std::string utf8 = dom::ToUtf8(text);
    if (utf8.find("\r\n") != utf8.npos) {
        CString plain(std::move(utf8));
        plain.Replace("\r\n", "\n");
        utf8 = plain.AsStd();
    }
    Require(dom::CanHold(node.get_nodeType(), utf8), kCannotHold);
    return utf8;
}

std::string HeldName(std::string_view name) {
    Require(name.size() <= dom::kLongestName, "this is not a name in XML");
    std::string utf8 = dom::ToUtf8(name);
    Require(dom::IsName(utf8), "this is not a name in XML");
    return utf8;
}

// Nothing in a document can match a longer path or name.
std::string SoughtText(std::string_view text) {
    if (text.size() > dom::kLongestText) _com_raise_error(_com_error::kFail, "the path cannot be read");
    return dom::ToUtf8(text);
}

// The conversions use int lengths.
bool IsTooLong(dom::Node& document, std::string_view text) {
    if (text.size() <= dom::kLongestDocument) return false;
    dom::SetProblem(document, dom::TooLong());
    return true;
}

bool IsChildOf(const IXMLDOMNode& child, const IXMLDOMNode& parent) {
    return child.get_nodeType() != NODE_ATTRIBUTE && child.get_parentNode() == parent;
}

// Checks which node types may be children of which.
void RequireFit(const IXMLDOMNode& parent, const IXMLDOMNode& child) {
    const DOMNodeType outer = parent.get_nodeType(), inner = child.get_nodeType();
    const bool text = inner == NODE_TEXT || inner == NODE_CDATA_SECTION;
    const bool note = inner == NODE_COMMENT || inner == NODE_PROCESSING_INSTRUCTION;
    Require((outer == NODE_ELEMENT && (text || note || inner == NODE_ELEMENT)) ||
                (outer == NODE_DOCUMENT && (note || inner == NODE_ELEMENT)),
            "the node cannot be a child of the other");
    Require(!dom::Holds(child.Get(), parent.Get()), "a node cannot be inside itself");
    if (inner == NODE_ELEMENT)
        Require(dom::DepthOf(parent.Get()) + dom::HeightOf(child.Get()) <= dom::kMaxDepth,
                "elements are nested too deeply");
}

void RequireNoOtherRoot(const IXMLDOMNode& document, const IXMLDOMNode& child) {
    const IXMLDOMNode root = dom::DocumentElement(document.Get());
    Require(!root || root == child, "a document has one root");
}

void RequireRootAfterType(const IXMLDOMNode& reference) {
    Require(!reference || !dom::IsBeforeType(reference.Get()), "the root follows the document type declaration");
}

// A COM DOM has a node for the XML declaration, which must remain the first.
void RequireNoDeclaration(const IXMLDOMNode& node) {
    Require(!node || node.get_nodeType() != NODE_PROCESSING_INSTRUCTION || dom::NameOf(node.Get()) != "xml",
            "the XML declaration is the first node");
}

}  // namespace

IXMLDOMNode::IXMLDOMNode(const IXMLDOMNode& other) : m_node(other.m_node) {
    if (m_node) dom::Retain(*m_node);
}

IXMLDOMNode::~IXMLDOMNode() {
    if (m_node) dom::Release(*m_node);
}

dom::Node& IXMLDOMNode::Get() const {
    if (!m_node) _com_raise_error(_com_error::kPointer);
    return *m_node;
}

bool operator==(const IXMLDOMNode& a, const IXMLDOMNode& b) {
    return a.m_node == b.m_node || (a.m_node && b.m_node && dom::SameNode(*a.m_node, *b.m_node));
}

DOMNodeType IXMLDOMNode::get_nodeType() const {
    return dom::TypeOf(Get());
}

CString IXMLDOMNode::get_nodeName() const {
    return dom::ToCodePage(dom::NameOf(Get()));
}

CString IXMLDOMNode::get_nodeValue() const {
    return dom::ToCodePage(dom::ValueOf(Get()));
}

CString IXMLDOMNode::get_namespaceURI() const {
    return dom::ToCodePage(dom::NamespaceOf(Get()));
}

CString IXMLDOMNode::get_text() const {
    return dom::ToCodePage(dom::TextOf(Get()));
}

void IXMLDOMNode::put_text(std::string_view text) const {
    dom::SetText(Get(), HeldText(*this, text));
}

CString IXMLDOMNode::get_xml() const {
    Get();
    return dom::ToCodePage(dom::MarkupOf(*this, dom::Markup::CodePage));
}

IXMLDOMNode IXMLDOMNode::get_parentNode() const {
    return dom::Parent(Get());
}

IXMLDOMNode IXMLDOMNode::get_firstChild() const {
    return dom::FirstChild(Get());
}

IXMLDOMNode IXMLDOMNode::get_nextSibling() const {
    return dom::NextSibling(Get());
}

IXMLDOMNode IXMLDOMNode::get_previousSibling() const {
    return dom::PreviousSibling(Get());
}

IXMLDOMDocument IXMLDOMNode::get_ownerDocument() const {
    return IXMLDOMDocument(dom::OwnerDocument(Get()));
}

std::vector<IXMLDOMNode> IXMLDOMNode::get_attributes() const {
    return dom::Attributes(Get());
}

IXMLDOMNode IXMLDOMNode::selectSingleNode(std::string_view path) const {
    return dom::SelectFirst(Get(), SoughtText(path));
}

std::vector<IXMLDOMNode> IXMLDOMNode::selectNodes(std::string_view path) const {
    return dom::SelectAll(Get(), SoughtText(path));
}

IXMLDOMNode IXMLDOMNode::appendChild(const IXMLDOMNode& child) const {
    return insertBefore(child, nullptr);
}

IXMLDOMNode IXMLDOMNode::insertBefore(const IXMLDOMNode& child, const IXMLDOMNode& reference) const {
    RequireFit(*this, child);
    Require(!reference || IsChildOf(reference, *this), "the reference is not a child of the node");
    RequireNoDeclaration(child);
    RequireNoDeclaration(reference);
    if (get_nodeType() == NODE_DOCUMENT && child.get_nodeType() == NODE_ELEMENT) {
        RequireNoOtherRoot(*this, child);
        RequireRootAfterType(reference);
    }
    if (child == reference) return child;
    dom::Insert(Get(), child.Get(), reference.m_node);
    return child;
}

IXMLDOMNode IXMLDOMNode::removeChild(const IXMLDOMNode& child) const {
    Require(IsChildOf(child, *this), "the node is not a child of the other");
    dom::Remove(Get(), child.Get());
    return child;
}

IXMLDOMElement::IXMLDOMElement(IXMLDOMNode node) {
    if (node && node.get_nodeType() == NODE_ELEMENT) IXMLDOMNode::operator=(std::move(node));
}

bool IXMLDOMElement::getAttribute(std::string_view name, CString& value) const {
    std::string utf8;
    if (name.size() > dom::kLongestName || !dom::GetAttribute(Get(), dom::ToUtf8(name), utf8)) return false;
    value = CString(dom::ToCodePage(utf8));
    return true;
}

void IXMLDOMElement::setAttribute(std::string_view name, std::string_view value) const {
    dom::Node& element = Get();
    const std::string utf8 = HeldName(name);
    Require(value.size() <= dom::kLongestText, kCannotHold);
    const std::string text = dom::ToUtf8(value);
    Require(dom::CanHold(NODE_ATTRIBUTE, text), kCannotHold);
    Require(!dom::IsDeclaration(utf8) || dom::CanDeclare(dom::DeclaredPrefix(utf8), text),
            "this prefix cannot be declared so");
    Require(dom::SetAttribute(element, utf8, text), "the prefix is not declared, or the name is taken");
}

void IXMLDOMElement::removeAttribute(std::string_view name) const {
    dom::Node& element = Get();
    if (name.size() <= dom::kLongestName)
        Require(dom::RemoveAttribute(element, dom::ToUtf8(name)), "the declaration is in use");
}

IXMLDOMDocument::IXMLDOMDocument(IXMLDOMNode node) {
    if (node && node.get_nodeType() == NODE_DOCUMENT) IXMLDOMNode::operator=(std::move(node));
}

HRESULT IXMLDOMDocument::CreateInstance() {
    HRESULT error = 0;
    *this = IXMLDOMDocument(dom::CreateDocument(error));
    return error;
}

void IXMLDOMDocument::put_async(bool async) const {
    dom::SetAsync(Get(), async);
}

void IXMLDOMDocument::put_validateOnParse(bool validate) const {
    dom::SetValidate(Get(), validate);
}

void IXMLDOMDocument::put_preserveWhiteSpace(bool preserve) const {
    dom::SetKeepSpace(Get(), preserve);
}

bool IXMLDOMDocument::loadXML(std::string_view text) const {
    return !IsTooLong(Get(), text) && dom::LoadText(Get(), dom::ToUtf8(text));
}

bool IXMLDOMDocument::load(std::string_view bytes) const {
    return !IsTooLong(Get(), bytes) && dom::LoadBytes(Get(), bytes);
}

std::string IXMLDOMDocument::save() const {
    return dom::Save(Get());
}

IXMLDOMElement IXMLDOMDocument::get_documentElement() const {
    return IXMLDOMElement(dom::DocumentElement(Get()));
}

IXMLDOMParseError IXMLDOMDocument::get_parseError() const {
    return dom::Problem(Get());
}

IXMLDOMElement IXMLDOMDocument::createElement(std::string_view tag) const {
    return createElement(tag, nullptr);
}

IXMLDOMElement IXMLDOMDocument::createElement(std::string_view tag, const IXMLDOMNode& scope) const {
    dom::Node& document = Get();
    IXMLDOMElement element(dom::CreateElement(document, HeldName(tag), scope ? &scope.Get() : nullptr));
    Require(static_cast<bool>(element), "the prefix is not declared");
    return element;
}

}  // namespace MSXML2
