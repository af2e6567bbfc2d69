#pragma once

/// @file The XML DOM that the library works on: handles to documents and nodes under their published names.
///
/// A handle is a small value that counts as one reference: it keeps its node, and the document around it, alive, also after
/// the node was removed from the document. A handle may be null. Every operation of a null handle but the tests of it
/// raises _com_error with code E_POINTER (0x80004003); a DOM call that fails raises _com_error with its code. A document
/// and its handles belong to one thread.
///
/// On Windows the DOM is MSXML's (DOMDocument 3.0, through COM, which is initialised for a thread that has not done so);
/// on Linux it is libxml2's. They agree on what is promised here. Where the COM DOM is Wine's: one text, comment or value
/// of more than 10,000,000 bytes is refused, a prefix that was never declared is not, the place of an error may be that of
/// the last tag before it, or 0, and a node that was taken out or moved to another document may lose its namespace.
///
/// Texts are bytes in the process's code page. A character that it does not hold is "?" in a value and a reference in
/// markup; between nodes nothing is lost. The characters U+0080 to U+009F are these bytes in a code page of single bytes.
///
/// **What an operation accepts, saves, and loads again as the same tree.** What XML 1.0 and its namespaces cannot hold
/// raises E_INVALIDARG and changes nothing: names that are none, or whose prefix is not declared where they stand; texts
/// with control characters, U+FFFE or U+FFFF, or more than 10^9 bytes; "--" in a comment, "]]>" in CDATA, carriage returns
/// in either; elements more than 256 deep. Nodes that move keep their namespaces: what is not declared so at the new place
/// is declared with them.
///
/// **Documents from outside are limited**, in every encoding alike: elements nest at most 256 deep; a document type
/// declaration may name an external subset, which is never read, and declare elements, attributes and notations, but no
/// entities; references to others than the five of XML are refused; attributes that only a declaration gives are at most
/// 100,000; a text has at most 2^31 - 1 bytes. Nothing is ever fetched from anywhere.
///
/// Costs: libxml2 compares the attributes of one tag with each other, so loading a tag with n of them takes time that grows
/// with n squared. Setting an attribute with a prefix compares it with the others of its element that have one, and a node
/// that moves looks for its prefixes among all declarations of the elements around it. Everything else is linear; on
/// Windows, what the COM DOM does for one attribute or child is its own affair.

#include <utility>
#include <vector>

#include "qvcommon/framework/ComError.h"

namespace qv::dom {

/// The backend's side of a node.
struct Node;

}  // namespace qv::dom

namespace MSXML2 {

class IXMLDOMDocument;

/// What a node is, by the numbers of the DOM.
enum DOMNodeType {
    NODE_INVALID = 0,
    NODE_ELEMENT = 1,
    NODE_ATTRIBUTE = 2,
    NODE_TEXT = 3,
    NODE_CDATA_SECTION = 4,
    NODE_ENTITY_REFERENCE = 5,
    NODE_ENTITY = 6,
    NODE_PROCESSING_INSTRUCTION = 7,
    NODE_COMMENT = 8,
    NODE_DOCUMENT = 9,
    NODE_DOCUMENT_TYPE = 10,
    NODE_DOCUMENT_FRAGMENT = 11,
    NODE_NOTATION = 12
};

/// A handle to a node of any kind, or to none.
class QVCOMMON_API IXMLDOMNode {
public:
    /// A null handle.
    IXMLDOMNode() = default;
    /// A null handle, as the default one.
    IXMLDOMNode(std::nullptr_t) {}
    /// Takes over one reference.
    explicit IXMLDOMNode(qv::dom::Node* node) : m_node(node) {}
    IXMLDOMNode(const IXMLDOMNode& other);
    IXMLDOMNode(IXMLDOMNode&& other) noexcept : m_node(other.m_node) { other.m_node = nullptr; }
    /// Refers to the other handle's node from then on.
    IXMLDOMNode& operator=(IXMLDOMNode other) noexcept {
        std::swap(m_node, other.m_node);
        return *this;
    }
    ~IXMLDOMNode();

    /// False for a null handle.
    explicit operator bool() const { return m_node != nullptr; }
    /// True for two handles to one node, and for two null handles.
    friend QVCOMMON_API bool QVCOMMON_CALL operator==(const IXMLDOMNode& a, const IXMLDOMNode& b);

    /// What the node is.
    DOMNodeType get_nodeType() const;
    /// As the document writes it, with its prefix: "#text", "#document" and the like for nodes without a name.
    CString get_nodeName() const;
    /// Of texts, comments, instructions and attributes; empty for all others.
    CString get_nodeValue() const;
    /// Empty for a name without a namespace.
    CString get_namespaceURI() const;

    /// The text of a node and all below it, character references and CDATA resolved, without comments and instructions.
    /// White space at both ends is cut off, unless the document keeps it, xml:space="preserve" holds, or it stands in
    /// CDATA.
    CString get_text() const;
    /// Replaces all content of an element, or the value of an attribute, text or comment. CR LF is stored as LF.
    void put_text(std::string_view text) const;
    /// The markup of the node and all below it: no indentation is added, empty elements are "<a/>", line feeds stay as they
    /// are, other control characters are references. An attribute is name="value".
    CString get_xml() const;

    /// Each: Null when absent. A COM DOM has an instruction named "xml" for the XML declaration, libxml2 has no node.
    IXMLDOMNode get_parentNode() const;
    IXMLDOMNode get_firstChild() const;
    IXMLDOMNode get_nextSibling() const;
    IXMLDOMNode get_previousSibling() const;
    IXMLDOMDocument get_ownerDocument() const;
    /// In document order; empty for all but elements. On Linux with the declarations of namespaces; what a COM DOM tells of
    /// these is its own affair.
    std::vector<IXMLDOMNode> get_attributes() const;

    /// The first node in document order that the path selects, or null.
    ///
    /// Paths are XPath 1.0, with two changes: a predicate that is a plain number counts from ZERO, among the siblings that
    /// its step selects ("item[0]" is the first), and names are compared as they are written, prefix and all: a default
    /// namespace or the URI behind a prefix play no part. Paths of names, indexes and a final "@name" are walked directly
    /// where the DOM allows it, in time linear in the nodes visited. The function id() is of no use: it needs declarations
    /// of identifiers, which are not kept (Linux) or a COM DOM's own affair.
    /// @throws _com_error E_FAIL for a path that is no such expression.
    IXMLDOMNode selectSingleNode(std::string_view path) const;
    /// All of them, in document order.
    std::vector<IXMLDOMNode> selectNodes(std::string_view path) const;

    /// Moves a node, of this or another document, to the end of the children. Handles to it, and to what is below it, go on
    /// meaning the same nodes.
    /// @return the node.
    /// @throws _com_error E_INVALIDARG for a node that holds this one, a second root, or what cannot be a child.
    IXMLDOMNode appendChild(const IXMLDOMNode& child) const;
    /// The same, to before a child of this node; at the end for a null `reference`.
    IXMLDOMNode insertBefore(const IXMLDOMNode& child, const IXMLDOMNode& reference) const;
    /// Takes a child out; it lives on through its handles. @throws _com_error E_INVALIDARG when it is no child of this
    /// node.
    IXMLDOMNode removeChild(const IXMLDOMNode& child) const;

    /// For the library's own use: the node behind the handle. @throws _com_error E_POINTER
    qv::dom::Node& Get() const;

protected:
    qv::dom::Node* m_node = nullptr;  ///< one reference; null for none
};

/// A handle to an element, or to none.
class QVCOMMON_API IXMLDOMElement : public IXMLDOMNode {
public:
    using IXMLDOMNode::IXMLDOMNode;
    /// The same node as an element; null when it is none.
    explicit IXMLDOMElement(IXMLDOMNode node);

    /// The name as the document writes it.
    CString get_tagName() const { return get_nodeName(); }
    /// False, and `value` left alone, when there is no such attribute.
    bool getAttribute(std::string_view name, CString& value) const;
    /// "xmlns" and "xmlns:p" are declarations: on Linux the names below mean what they then say; what a COM DOM makes of a
    /// change is its own affair.
    /// @throws _com_error E_INVALIDARG for a prefix that is not declared, a declaration that Namespaces in XML forbids, and
    /// one under which names that stand there would be undeclared or the same.
    void setAttribute(std::string_view name, std::string_view value) const;
    /// Nothing happens when there is none. @throws _com_error E_INVALIDARG for a declaration that is in use.
    void removeAttribute(std::string_view name) const;
};

/// What was wrong with a document; the code is 0 when nothing was.
class QVCOMMON_API IXMLDOMParseError {
public:
    IXMLDOMParseError() = default;
    /// With these values.
    IXMLDOMParseError(HRESULT code, CString reason, long line, long position)
        : m_code(code), m_reason(std::move(reason)), m_line(line), m_position(position) {}

    /// The DOM's own number, of Wine's mostly E_FAIL; 0xC00CE000 for refused content, E_OUTOFMEMORY for a refused length.
    HRESULT get_errorCode() const { return m_code; }
    /// In the DOM's own words, without a line end.
    CString get_reason() const { return m_reason; }
    /// From 1; 0 when there was no error, or nobody knows.
    long get_line() const { return m_line; }
    /// The column in that line as the DOM counts it, from 1; 0 when there was no error, or nobody knows.
    long get_linepos() const { return m_position; }

private:
    HRESULT m_code = 0;
    CString m_reason;
    long m_line = 0, m_position = 0;
};

/// A handle to a document, or to none.
class QVCOMMON_API IXMLDOMDocument : public IXMLDOMNode {
public:
    using IXMLDOMNode::IXMLDOMNode;
    /// The same node as a document; null when it is none.
    explicit IXMLDOMDocument(IXMLDOMNode node);

    /// Makes this a handle to a new, empty document. @return 0; a negative code when the system has no DOM.
    HRESULT CreateInstance();

    /// Loads are synchronous in any case after `false`; a new COM document is asynchronous.
    void put_async(bool async) const;
    /// With `false` a document type declaration is read and not enforced, as it is on Linux in any case.
    void put_validateOnParse(bool validate) const;
    /// True: texts that are all white space stay in the tree, and texts are given with the white space at their ends. For
    /// loads from then on.
    void put_preserveWhiteSpace(bool preserve) const;

    /// Replaces the content by that of an XML text; a declared encoding is not looked at. Nodes of the old content live on
    /// through their handles.
    /// @return false when the text is not well-formed or beyond the limits above: the document is then empty, and
    /// get_parseError tells why.
    bool loadXML(std::string_view text) const;
    /// The same for the bytes of a file, in the encoding that they declare.
    bool load(std::string_view bytes) const;
    /// The bytes for a file, in the encoding that the loaded one declared, or UTF-8, also where the DOM cannot write that
    /// one. They begin with an XML declaration, on Windows only where one was loaded. White space is as it was loaded; the
    /// DOM's own line end may follow. Where defaults of a document type declaration would change the tree, declarations of
    /// attributes are left out, on Windows the whole document type declaration.
    std::string save() const;

    /// Null for an empty document.
    IXMLDOMElement get_documentElement() const;
    /// Of the last load.
    IXMLDOMParseError get_parseError() const;
    /// An element that is not in a tree yet, in no namespace. @throws _com_error E_INVALIDARG for a name with a prefix.
    IXMLDOMElement createElement(std::string_view tag) const;
    /// The same for a place in `scope`: a prefix stands for what it stands for there. @throws _com_error E_INVALIDARG for
    /// one that is not declared.
    IXMLDOMElement createElement(std::string_view tag, const IXMLDOMNode& scope) const;
};

}  // namespace MSXML2
