#pragma once

/// @file Typed values in small XML documents, addressed by path, and related operations: creating and deleting paths,
/// fragments, sorting, escaping.
///
/// **Paths** are those of IXMLDOMNode::selectSingleNode (XmlDom.h): steps separated by "/", indexes in brackets from
/// ZERO, a final "@name" for an attribute; relative to the element that is passed, or, with a leading "/", to its
/// document. An `index` argument is appended to the path as by GetTagIndex: 0 and below add nothing, and thus select
/// the first match.
///
/// **Results**: members of type BOOL return 1 or 0; a missing node is reported by 0 and never raised. A null handle
/// raises _com_error with E_POINTER (0x80004003), an invalid path E_FAIL, a failing DOM call its own code. A document
/// and its handles must be used by one thread only; nothing else here has state.

#include "qvcommon/XmlDom.h"
#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/DateTime.h"

/// Operations on XML documents by path. An object stores the text of one document; most members are static.
class QVCOMMON_API CXmlHelper {
public:
    /// Each: The DOM's handle.
    using Node = MSXML2::IXMLDOMNode;
    using Element = MSXML2::IXMLDOMElement;
    using Document = MSXML2::IXMLDOMDocument;

    // The text of a document

    /// Stores the empty string.
    CXmlHelper() = default;
    /// Stores the text, without parsing it.
    explicit CXmlHelper(std::string_view xml) : m_xml(xml) {}
    virtual ~CXmlHelper() = default;
    /// The text of the document.
    void SetXml(std::string_view xml) { m_xml = xml; }
    CString GetXml() const { return m_xml; }
    /// Returns the document element of the text, in a new document on every call; null if it does not parse.
    Element BuildXmlTree() const { return GetDocumentElement(m_xml); }

    // Documents and fragments (xml/XmlHelper.cpp, xml/XmlFragments.cpp)

    /// Returns a new document, synchronous and empty. @throws CVorbexException* if the system has no DOM: "XML Dom not
    /// found.\n Install the latest MSXML Dom.", severity 48.
    static Document CreateDocument();
    /// Returns the document element of a string; null if it does not parse. It keeps its document alive. @throws as
    /// CreateDocument.
    static Element GetDocumentElement(std::string_view xml);
    /// Replaces a document's content by that of a string. Returns 0 if it does not parse: the document is then empty.
    static BOOL LoadXml(const Document& document, std::string_view xml);

    /// Returns the markup inside an element, without its own tags. For a string: inside its document element, or empty
    /// if the string does not parse.
    static CString GetInnerXml(std::string_view xml);
    static CString GetInnerXml(const Node& node);
    /// Replaces the markup inside an element, keeping its attributes. Child elements that recur in the new markup keep
    /// their nodes: first identical ones, then, in order, those with the same name, namespace and "typ" attribute, whose
    /// attributes and content are replaced, unless a prefix of the new attributes has another namespace there. Markup
    /// without declarations is in no namespace, regardless of the element's. O(n).
    /// @return 0 if the markup does not parse; nothing is changed then.
    static BOOL SetXml(const Element& element, std::string_view xml);

    /// Each: Parses a fragment and inserts it at the end of the parent's content, or before one of its children.
    /// @param root  non-zero: inserts the fragment's root element; zero: the root is only a wrapper, whose content is
    /// inserted, in order.
    /// @return the first inserted node; null if there was none: for an empty wrapper, and for a string of white space.
    /// @throws _com_error E_POINTER if the fragment does not parse, E_INVALIDARG if the reference is not a child of the
    /// parent. Nothing is inserted then.
    static Node AppendXml(const Node& parent, std::string_view xml, BOOL root);
    static Node AppendXmlBeforeNode(const Node& parent, std::string_view xml, const Node& reference, BOOL root);

    /// Returns "<tag>text</tag>", the text escaped by Clean; the tag is not checked.
    static CString MakeElement(std::string_view tag, std::string_view text);
    static CString MakeElement(std::string_view tag, int value);

    // Paths (xml/XmlPaths.cpp)

    /// Returns "[index]"; empty for 0 and below.
    static CString GetTagIndex(int index);
    /// Ensures that every step of a path exists: names, with or without indexes. Missing elements are created with
    /// `value`, which is MARKUP (see Clean), as their content, along the whole path; for "item[3]" also the missing
    /// item[0] to item[2]. A last step "@name" sets the attribute to the value, as plain text, if it is missing. O(n)
    /// in the siblings along the path and the created elements.
    /// @return the path with an index in every step: "r/item[2]" gives "r[0]/item[2]".
    /// @throws _com_error E_POINTER for a name or value that is not valid markup, E_INVALIDARG for a missing step with
    /// a predicate other than an index, more than 2^24 missing elements in a step, a second root, or a name that XML
    /// does not allow. Nothing is changed then.
    static CString CreateXmlPath(const Document& document, std::string_view path, std::string_view value = {});
    /// Removes the first node at a path. @return its former indexed path (GetNodePath); empty if there was none.
    static CString DeleteXmlPath(const Document& document, std::string_view path);

    /// Returns the path with "[0]" after every step without a predicate; "@name", ".", ".." and functions have no
    /// index.
    static CString GetIndexedPath(std::string_view path);
    /// Returns "name[2]": the name and the position among siblings of the same name, the first of which is number
    /// `first`: 0 as in the paths here, 1 as in plain XPath. Attributes are "@name", texts "text()[0]", a document is
    /// empty.
    static CString GetIndexedName(const Node& node, int first = 0);
    /// Does the same for all nodes from the root down to this one: "/r[0]/item[2]".
    static CString GetIndexedPath(const Node& node, int first = 0);
    /// Returns the path from `base` to a descendant, "item[2]/v[0]"; empty for the node itself. From the document, with
    /// a leading "/", if the base is null or not an ancestor of the node. An attribute, whose element the DOM does not
    /// provide, is "@name".
    static CString GetNodePath(const Node& node, const Node& base);
    /// Returns the names from the root down, without indexes: "/r/item", the path of all elements at such a position.
    static CString GetElementMask(const Element& element);

    // Pruning and sorting (xml/XmlOrder.cpp)

    /// Deletes an element that contains neither attributes, elements nor text (white space does not count), along with
    /// its comments. Returns 0 if it was not empty, for other nodes, and for the document element.
    static BOOL DeleteIfEmpty(const Node& node);
    /// Does the same for every node that a path selects from `node`, descendants first, so that elements that become
    /// empty are deleted too. An empty pattern means all descendant elements. @return the number deleted.
    static int DeleteEmptyElements(const Node& node, std::string_view pattern);

    /// Sorts the child elements by the text that `pattern` selects from each ("." for its own, "@name" for an
    /// attribute; a missing one is empty), by the collation of the locale, stably; the other children keep their
    /// positions.
    static void Sort(const Node& node, std::string_view pattern, int descending);
    /// Sorts by several keys, in order of precedence.
    static void Sort(const Node& node, const CStringArray& patterns, int descending);
    /// Sorts only the child elements selected by the path `elements`; the others keep their positions.
    static void Sort(const Node& node, const CStringArray& patterns, std::string_view elements, int descending);
    /// Sorts by one key only the child elements at positions `first` to `last`, from 0; -1 means the last one.
    static void SortSection(const Node& node, std::string_view pattern, int first, int last, int descending);

    // Typed values (xml/XmlValues.cpp)
    //
    // The value of a node is its whole text. Getters return 0 and leave the output unchanged if there is no node at the
    // path, unless stated otherwise; setters return 0 and create nothing.

    /// Reading converts every LF to CR LF, writing CR LF to LF, so that newlines of both kinds are read as CR LF.
    static BOOL GetString(const Node& element, std::string_view path, CString& value, int index = 0);
    static BOOL SetString(const Node& element, std::string_view path, std::string_view value, int index = 0);
    /// Parses the digits at the start of the text, as atoi does; 0 for other texts, the nearest number for those out of
    /// range.
    static BOOL GetInteger(const Node& element, std::string_view path, int& value, int index = 0);
    static BOOL SetInteger(const Node& element, std::string_view path, int value, int index = 0);
    /// Read as by atof, written as "%lg", that is with six digits; always with a decimal point, regardless of the
    /// locale.
    static BOOL GetDouble(const Node& element, std::string_view path, double& value, int index = 0);
    static BOOL SetDouble(const Node& element, std::string_view path, double value, int index = 0);
    /// "TRUE" and "FALSE". Returns 1 exactly for "true" in any case; `value` is 0 in every other case, also if there is
    /// no node.
    static BOOL GetBool(const Node& element, std::string_view path, BOOL& value, int index = 0);
    static BOOL SetBool(const Node& element, std::string_view path, BOOL value, int index = 0);
    /// "05 May 2004 14:03:07", with the English names of months regardless of the locale, or "INVALID" for an invalid
    /// date. Read by COleDateTime::ParseDateTime; what it cannot parse is an invalid date, with the result 1. A missing
    /// node gives an invalid date and 0.
    static BOOL GetDate(const Node& element, std::string_view path, COleDateTime& value, int index = 0);
    static BOOL SetDate(const Node& element, std::string_view path, const COleDateTime& value, int index = 0);

    /// Each: Appends the values at path, path[1], path[2] and so on up to the first that is missing (`mode` 0), or at
    /// the paths that `path`, a format with one "%d", gives for 0, 1, 2 and so on. O(n) in the siblings for paths of
    /// names and indexes whose last step has none ("list/item"), and for formats of such with "%d" as an index or in a
    /// name. Reading also ends if an index finds the same node again, and after more items than there are nodes.
    /// @return 1 if the array is not empty at the end. @throws CInvalidArgException* for a format without its "%d".
    static BOOL GetStringArray(const Node& element, std::string_view path, CStringArray& values, int mode = 0);
    static BOOL GetIntegerArray(const Node& element, std::string_view path, CUIntArray& values, int mode = 0);
    static BOOL GetDoubleArray(const Node& element, std::string_view path, CDoubleArray& values, int mode = 0);
    static BOOL GetBoolArray(const Node& element, std::string_view path, CUIntArray& values, int mode = 0);

    // Attributes and elements (xml/XmlValues.cpp)

    /// Returns 0, leaving the output unchanged, if there is no such attribute. Numbers are parsed as by GetInteger.
    static BOOL GetAttribute(const Element& element, std::string_view name, UINT& value);
    static BOOL GetAttribute(const Element& element, std::string_view name, CString& value);
    /// Sets or creates an attribute. Always returns 1.
    static BOOL SetAttribute(const Element& element, std::string_view name, std::string_view value);
    static BOOL SetAttribute(const Element& element, std::string_view name, UINT value);
    /// Does the same.
    static void AddAttribute(const Element& element, std::string_view name, std::string_view value);
    static void AddAttribute(const Element& element, std::string_view name, UINT value);
    /// Appends that attribute of every element that the path selects, in document order, skipping those without it.
    /// @return 1 if the array is not empty at the end.
    static BOOL GetAttributeArray(const Node& element, std::string_view path, std::string_view name,
                                  CStringArray& values);
    static BOOL GetAttributeArray(const Node& element, std::string_view path, std::string_view name,
                                  CUIntArray& values);
    /// Appends a new child element with this text or number.
    static Element AddElement(const Node& element, std::string_view tag, long value);
    static Element AddElement(const Node& element, std::string_view tag, std::string_view text);

    // Escaping for manually written markup (xml/XmlEscape.cpp)
    //
    // Characters that XML reserves become entities, and the bytes 0x80 to 0x9F character references with their number:
    // "a<b" becomes "a&lt;b", byte 0x93 "&#147;". In a multibyte code page this applies only to bytes that are not part
    // of a character. Newlines and control characters are kept. O(n); a non-const CString is changed in place and
    // returned, other strings are not modified.

    /// Escapes & < >
    static CString& Clean(CString& text);
    /// The inverse; also converts every "\n" to "\r\n". "&amp;lt;" gives "&lt;".
    static CString& Dirty(CString& text);
    /// Escapes & " ' < >
    static CString& CleanAttribute(CString& text);
    /// The inverse.
    static CString& DirtyAttribute(CString& text);
    /// Each: Returns the changed copy.
    static CString Clean(const CString& text) { return Changed(text, Clean); }
    static CString Dirty(const CString& text) { return Changed(text, Dirty); }
    static CString CleanAttribute(const CString& text) { return Changed(text, CleanAttribute); }
    static CString DirtyAttribute(const CString& text) { return Changed(text, DirtyAttribute); }

protected:
    /// Each: Converts only the references.
    static void CleanInvalidChars(CString& text);
    static void DirtyInvalidChars(CString& text);
    /// Fills the arrays below, once; thread-safe.
    static void SetupInvalidCharArray();

    /// Non-zero once the arrays are filled.
    static BOOL ms_bSetupInvalidCharArray;
    /// The strings of one byte 0x80 to 0x9F and their references. Empty until SetupInvalidCharArray.
    static CStringArray ms_InvalidCharsSearch, ms_InvalidCharsReplace;

private:
    static CString Changed(CString text, CString& (*change)(CString&)) { return std::move(change(text)); }

    CString m_xml;
};
