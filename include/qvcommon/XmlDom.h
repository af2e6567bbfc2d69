#pragma once

/// @file The XML DOM used by the library: handles to documents and nodes under their published names.
///
/// A handle is a small value that counts as one reference: it keeps its node, and the document around it, alive, even
/// after the node was removed from the document. A handle may be null. Every operation on a null handle except its null
/// tests raises _com_error with code E_POINTER (0x80004003); a DOM call that fails raises _com_error with its code. A
/// document and its handles must be used by one thread only.
///
/// On Windows the DOM is MSXML (DOMDocument 3.0, through COM, which is initialized for a thread that has not done so);
/// on Linux it is libxml2. They agree on everything promised here. With Wine's COM DOM, a text, comment or value of
/// more than 10,000,000 bytes is rejected, an undeclared prefix is not, the position of an error may be that of the
/// last tag before it, or 0, and a node that was removed or moved to another document may lose its namespace.
///
/// Strings are bytes in the process's code page. A character that it lacks is "?" in a value and a reference in markup;
/// copying between nodes is lossless. The characters U+0080 to U+009F map to these bytes in a single-byte code page.
///
/// **What an operation accepts can be saved and loaded again as the same tree**, except for text nodes that were made
/// empty, which are not there afterwards. What XML 1.0 and its namespaces do not allow raises E_INVALIDARG and changes
/// nothing: invalid names, or names whose prefix is not in scope; texts with control characters, U+FFFE or U+FFFF, or
/// more than 10^9 bytes; "--" in a comment, "]]>" in CDATA, carriage returns in either; elements more than 256 deep.
/// Moved nodes keep their namespaces: missing declarations are added to them.
///
/// **Documents from outside are limited**, equally in every encoding: elements nest at most 256 deep; a document type
/// declaration may name an external subset, which is never read, and declare elements, attributes and notations, but no
/// entities; references to others than the five of XML are rejected; at most 100,000 attributes may be defaulted by
/// declarations, with values of 10,000,000 bytes in all and names that are valid in a tag (on Windows, a default also
/// counts for elements that give the attribute themselves; on Linux only that of a namespace declaration does); a text
/// has at most 2^31 - 1 bytes. Nothing is ever fetched from the network or disk.
///
/// Costs: libxml2 compares the attributes of one tag with each other, so loading a tag with n of them is O(n^2).
/// Setting an attribute with a prefix compares it with the others of its element that have one, and moving a node looks
/// up its prefixes among all declarations of the elements around it. Everything else is linear; on Windows, the cost of
/// one attribute or child depends on the COM DOM.

#include <utility>
#include <vector>

#include "qvcommon/framework/ComError.h"

namespace qv::dom {

/// The backend's representation of a node.
struct Node;

}  // namespace qv::dom

namespace MSXML2 {

class IXMLDOMDocument;

/// Node types, with the numbers of the DOM.
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

/// A handle to a node of any kind, or null.
class QVCOMMON_API IXMLDOMNode {
public:
    /// A null handle.
    IXMLDOMNode() = default;
    /// A null handle.
    IXMLDOMNode(std::nullptr_t) {}
    /// Takes ownership of one reference.
    explicit IXMLDOMNode(qv::dom::Node* node) : m_node(node) {}
    IXMLDOMNode(const IXMLDOMNode& other);
    IXMLDOMNode(IXMLDOMNode&& other) noexcept : m_node(other.m_node) { other.m_node = nullptr; }
    /// Makes the handle refer to the other one's node.
    IXMLDOMNode& operator=(IXMLDOMNode other) noexcept {
        std::swap(m_node, other.m_node);
        return *this;
    }
    ~IXMLDOMNode();

    /// Returns false for a null handle.
    explicit operator bool() const { return m_node != nullptr; }
    /// Returns true for two handles to the same node, and for two null handles.
    friend QVCOMMON_API bool QVCOMMON_CALL operator==(const IXMLDOMNode& a, const IXMLDOMNode& b);

    /// Returns the node's type.
    DOMNodeType get_nodeType() const;
    /// Returns the name as written in the document, with its prefix: "#text", "#document" and the like for nodes
    /// without a name.
    CString get_nodeName() const;
    /// Returns the value of texts, comments, instructions and attributes; empty for all others.
    CString get_nodeValue() const;
    /// Returns the namespace; empty for a name without one.
    CString get_namespaceURI() const;

    /// Returns the text of a node and its descendants, with character references and CDATA resolved, without comments
    /// and instructions. White space at both ends is removed, unless the document preserves it, xml:space="preserve"
    /// applies, or it is in CDATA.
    CString get_text() const;
    /// Replaces the content of an element, or the value of an attribute, text or comment. CR LF is stored as LF.
    void put_text(std::string_view text) const;
    /// Returns the markup of the node and its descendants: without indentation, empty elements as "<a/>", line feeds
    /// verbatim, other control characters as references. An attribute is name="value".
    CString get_xml() const;

    /// Each: Null if absent. A COM DOM represents the XML declaration as an instruction named "xml", libxml2 has no
    /// node for it.
    IXMLDOMNode get_parentNode() const;
    IXMLDOMNode get_firstChild() const;
    IXMLDOMNode get_nextSibling() const;
    IXMLDOMNode get_previousSibling() const;
    IXMLDOMDocument get_ownerDocument() const;
    /// In document order; empty for all but elements. On Linux includes namespace declarations; whether a COM DOM does
    /// is unspecified.
    std::vector<IXMLDOMNode> get_attributes() const;

    /// Returns the first node in document order that the path selects, or null.
    ///
    /// Paths are XPath 1.0, with two changes: a predicate that is a plain number counts from ZERO, among the siblings
    /// that its step selects ("item[0]" is the first), and names are compared as written, including the prefix: a
    /// default namespace or the URI of a prefix are ignored. Paths of names, indexes and a final "@name" are evaluated
    /// directly where the DOM allows it, in O(n) of the nodes visited. The function id() is not useful: it needs
    /// declarations of identifiers, which are not kept on Linux and depend on the COM DOM on Windows.
    /// @throws _com_error E_FAIL for an invalid expression.
    IXMLDOMNode selectSingleNode(std::string_view path) const;
    /// Returns all selected nodes, in document order.
    std::vector<IXMLDOMNode> selectNodes(std::string_view path) const;

    /// Moves a node, of this or another document, to the end of the children. Handles to it and to its descendants
    /// remain valid.
    /// @return the node.
    /// @throws _com_error E_INVALIDARG for an ancestor of this node or itself, a second root, a root before the document
    /// type declaration, the XML declaration or a node before it, or what cannot be a child.
    IXMLDOMNode appendChild(const IXMLDOMNode& child) const;
    /// Does the same, inserting before a child of this node; at the end for a null `reference`.
    IXMLDOMNode insertBefore(const IXMLDOMNode& child, const IXMLDOMNode& reference) const;
    /// Removes a child, which stays alive through its handles. @throws _com_error E_INVALIDARG if it is not a child of
    /// this node.
    IXMLDOMNode removeChild(const IXMLDOMNode& child) const;

    /// Returns the node of the handle; for internal use. @throws _com_error E_POINTER
    qv::dom::Node& Get() const;

protected:
    qv::dom::Node* m_node = nullptr;  ///< owns one reference; null for none
};

/// A handle to an element, or null.
class QVCOMMON_API IXMLDOMElement : public IXMLDOMNode {
public:
    using IXMLDOMNode::IXMLDOMNode;
    /// The same node as an element; null if it is not one.
    explicit IXMLDOMElement(IXMLDOMNode node);

    /// Returns the name as written in the document.
    CString get_tagName() const { return get_nodeName(); }
    /// Returns false, leaving `value` unchanged, if there is no such attribute.
    bool getAttribute(std::string_view name, CString& value) const;
    /// Sets an attribute. "xmlns" and "xmlns:p" are declarations: on Linux they change the meaning of the names below;
    /// the effect of a change in a COM DOM is unspecified.
    /// @throws _com_error E_INVALIDARG for a prefix that is not declared, a declaration that Namespaces in XML forbids,
    /// and one that would make names in its scope undeclared or duplicates.
    void setAttribute(std::string_view name, std::string_view value) const;
    /// No-op if it does not exist. @throws _com_error E_INVALIDARG for a declaration that is in use.
    void removeAttribute(std::string_view name) const;
};

/// The error in a document; the code is 0 if there was no error.
class QVCOMMON_API IXMLDOMParseError {
public:
    IXMLDOMParseError() = default;
    /// With these values.
    IXMLDOMParseError(HRESULT code, CString reason, long line, long position)
        : m_code(code), m_reason(std::move(reason)), m_line(line), m_position(position) {}

    /// Returns the DOM's own number, in Wine mostly E_FAIL; 0xC00CE000 for rejected content, E_OUTOFMEMORY for a
    /// rejected length.
    HRESULT get_errorCode() const { return m_code; }
    /// Returns the DOM's own message, without a newline.
    CString get_reason() const { return m_reason; }
    /// Returns the line, from 1; 0 if there was no error, or it is unknown.
    long get_line() const { return m_line; }
    /// Returns the column as the DOM counts it, from 1; 0 if there was no error, or it is unknown.
    long get_linepos() const { return m_position; }

private:
    HRESULT m_code = 0;
    CString m_reason;
    long m_line = 0, m_position = 0;
};

/// A handle to a document, or null.
class QVCOMMON_API IXMLDOMDocument : public IXMLDOMNode {
public:
    using IXMLDOMNode::IXMLDOMNode;
    /// The same node as a document; null if it is not one.
    explicit IXMLDOMDocument(IXMLDOMNode node);

    /// Makes this a handle to a new, empty document. @return 0; a negative code if the system has no DOM.
    HRESULT CreateInstance();

    /// With `false`, loads are synchronous on every system; a new COM document is asynchronous.
    void put_async(bool async) const;
    /// With `false`, a document type declaration is read but not enforced, as always on Linux.
    void put_validateOnParse(bool validate) const;
    /// True: white-space-only texts are kept in the tree, and texts are returned with leading and trailing white space.
    /// Affects later loads.
    void put_preserveWhiteSpace(bool preserve) const;

    /// Replaces the content by that of an XML string; a declared encoding is ignored. Nodes of the old content stay
    /// alive through their handles.
    /// @return false if the string is not well-formed or exceeds the limits above: the document is then empty, and
    /// get_parseError returns the reason.
    bool loadXML(std::string_view text) const;
    /// Does the same for the bytes of a file, in their declared encoding.
    bool load(std::string_view bytes) const;
    /// Returns the bytes for a file, in the encoding declared by the loaded one, or in UTF-8, also if the DOM does not
    /// support that encoding. They begin with an XML declaration, on Windows only if one was loaded. White space is as
    /// loaded; the DOM's own newline may follow. If defaults of a document type declaration would change the tree,
    /// declarations of attributes are left out, on Windows the whole document type declaration.
    std::string save() const;

    /// Null for an empty document.
    IXMLDOMElement get_documentElement() const;
    /// Returns the error of the last load.
    IXMLDOMParseError get_parseError() const;
    /// Creates an element outside the tree, without a namespace. @throws _com_error E_INVALIDARG for a name with a
    /// prefix.
    IXMLDOMElement createElement(std::string_view tag) const;
    /// Does the same for use in `scope`: a prefix has the meaning that it has there. @throws _com_error E_INVALIDARG
    /// for one that is not declared.
    IXMLDOMElement createElement(std::string_view tag, const IXMLDOMNode& scope) const;
};

}  // namespace MSXML2
