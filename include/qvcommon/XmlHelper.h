#pragma once

/// @file Typed values in small XML documents, addressed by path, and what goes with them: building and deleting of paths,
/// fragments, sorting, escaping.
///
/// **Paths** are those of IXMLDOMNode::selectSingleNode (XmlDom.h): steps between "/", indexes in brackets from ZERO, a
/// final "@name" for an attribute; relative to the element that is passed, or, with a "/" in front, to its document. An
/// `index` argument is written behind the path as GetTagIndex has it: 0 and below add nothing, so they mean the first
/// match.
///
/// **Results**: members of type BOOL give 1 or 0; a node that is missing is reported by 0 and never raised. A null handle
/// raises _com_error with E_POINTER (0x80004003), a path that cannot be read E_FAIL, a DOM call that fails its own code. A
/// document and its handles belong to one thread; nothing else here has state.

#include "qvcommon/XmlDom.h"
#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/DateTime.h"

/// Operations on XML documents by path. An object holds the text of one document; most members need none.
class QVCOMMON_API CXmlHelper {
public:
    /// Each: the DOM's handle.
    using Node = MSXML2::IXMLDOMNode;
    using Element = MSXML2::IXMLDOMElement;
    using Document = MSXML2::IXMLDOMDocument;

    // One document's text

    /// Holds the empty text.
    CXmlHelper() = default;
    /// Holds the text; it is not parsed yet.
    explicit CXmlHelper(std::string_view xml) : m_xml(xml) {}
    virtual ~CXmlHelper() = default;
    /// The text of the document.
    void SetXml(std::string_view xml) { m_xml = xml; }
    CString GetXml() const { return m_xml; }
    /// The document element of the text, in a document of its own with every call; null when it does not parse.
    Element BuildXmlTree() const { return GetDocumentElement(m_xml); }

    // Documents and fragments (xml/XmlHelper.cpp, xml/XmlFragments.cpp)

    /// A new document, synchronous and empty. @throws CVorbexException* when the system has no DOM: "XML Dom not found.\n
    /// Install the latest MSXML Dom.", severity 48.
    static Document CreateDocument();
    /// The document element of a text; null when it does not parse. It keeps its document alive. @throws as CreateDocument.
    static Element GetDocumentElement(std::string_view xml);
    /// Replaces a document's content by that of a text. 0 when it does not parse: the document is then empty.
    static BOOL LoadXml(const Document& document, std::string_view xml);

    /// The markup inside an element: that of its content, without its own tags. Of a text: inside its document element, or
    /// nothing when the text does not parse.
    static CString GetInnerXml(std::string_view xml);
    static CString GetInnerXml(const Node& node);
    /// Replaces the markup inside an element. Attributes of the element stay. Child elements that the new markup
    /// repeats stay the nodes that they were: first those that are the same to the letter, then, in order, those with
    /// the same name and the same "typ" attribute, whose attributes and content are replaced. Linear.
    /// @return 0 when the markup does not parse; nothing is changed then.
    static BOOL SetXml(const Element& element, std::string_view xml);

    /// Each: Parses a fragment and inserts it at the end of the parent's content, or before one of its children.
    /// @param root  not zero: the fragment's root element goes in; zero: the root is a wrapper that is left out, what is in
    /// it goes in, in order.
    /// @return the first node inserted; null when there was none: for an empty wrapper, and for a text of white space.
    /// @throws _com_error E_POINTER when the fragment does not parse, E_INVALIDARG when the reference is no child of the
    /// parent. Nothing is inserted then.
    static Node AppendXml(const Node& parent, std::string_view xml, BOOL root);
    static Node AppendXmlBeforeNode(const Node& parent, std::string_view xml, const Node& reference, BOOL root);

    /// "<tag>text</tag>", the text escaped by Clean; the tag is not looked at.
    static CString MakeElement(std::string_view tag, std::string_view text);
    static CString MakeElement(std::string_view tag, int value);

    // Paths (xml/XmlPaths.cpp)

    /// "[index]"; nothing for 0 and below.
    static CString GetTagIndex(int index);
    /// Makes sure that every step of a path exists: names, with indexes or without. Missing elements are made with `value`,
    /// which is MARKUP (see Clean), as their content, along the whole path; for "item[3]" also the missing item[0] to
    /// item[2]. A last step "@name" sets the attribute to the value, as plain text, if it is missing. Time is in line with
    /// the elements that stand beside the path and those made.
    /// @return the path with an index in every step: "r/item[2]" gives "r[0]/item[2]".
    /// @throws _com_error E_POINTER for a name or value that makes no markup, E_INVALIDARG for a missing step with another
    /// predicate than an index, more than 2^24 missing elements in a step, or a second root, or a name that XML cannot hold. Nothing is changed then.
    static CString CreateXmlPath(const Document& document, std::string_view path, std::string_view value = {});
    /// Removes the first node at a path. @return its indexed path (GetNodePath) while it was there; empty when it was not.
    static CString DeleteXmlPath(const Document& document, std::string_view path);

    /// The path with "[0]" behind every step that has no predicate; "@name", ".", ".." and functions have no index.
    static CString GetIndexedPath(std::string_view path);
    /// "name[2]": the name and the place among siblings of the same name, the first of which is number `first`: 0 as paths
    /// have it here, 1 as in plain XPath. Attributes are "@name", texts "text()[0]", a document is empty.
    static CString GetIndexedName(const Node& node, int first = 0);
    /// The same for all nodes from the root down to this one: "/r[0]/item[2]".
    static CString GetIndexedPath(const Node& node, int first = 0);
    /// The path that leads from `base` to a node below it, "item[2]/v[0]"; empty for the node itself. From the document
    /// down, with "/" in front, when the base is null or does not hold the node. An attribute, whose element the DOM
    /// does not tell, is "@name".
    static CString GetNodePath(const Node& node, const Node& base);
    /// The names from the root down, without indexes: "/r/item", the path of all elements that stand at such a place.
    static CString GetElementMask(const Element& element);

    // Pruning and sorting (xml/XmlOrder.cpp)

    /// Deletes an element that holds neither attributes, elements nor text (white space is none); comments go with it. 0
    /// when there was something in it, for other nodes, and for the document element.
    static BOOL DeleteIfEmpty(const Node& node);
    /// The same for every node that a path selects from `node`, inner ones first, so that what becomes empty goes too. An
    /// empty pattern means all elements below. @return how many were deleted.
    static int DeleteEmptyElements(const Node& node, std::string_view pattern);

    /// Reorders the child elements by the text that `pattern` selects from each ("." for its own, "@name" for an attribute;
    /// a missing one is empty), by the collation of the locale, stable; the other children stay in their places.
    static void Sort(const Node& node, std::string_view pattern, int descending);
    /// By several keys: what is equal by one is ordered by the next.
    static void Sort(const Node& node, const CStringArray& patterns, int descending);
    /// The same among those child elements only that the path `elements` selects; the others stay in their places.
    static void Sort(const Node& node, const CStringArray& patterns, std::string_view elements, int descending);
    /// By one key, the child elements at positions `first` to `last` only, counted from 0; -1 means the last one.
    static void SortSection(const Node& node, std::string_view pattern, int first, int last, int descending);

    // Typed values (xml/XmlValues.cpp)
    //
    // The value of a node is its whole text. Get gives 0 and leaves the output alone when there is no node at the path,
    // unless said otherwise; Set gives 0 and makes nothing.

    /// Reading, every LF becomes CR LF; writing, CR LF becomes LF, so that line ends of both kinds come back as CR LF.
    static BOOL GetString(const Node& element, std::string_view path, CString& value, int index = 0);
    static BOOL SetString(const Node& element, std::string_view path, std::string_view value, int index = 0);
    /// The digits at the start of the text, as atoi has it; 0 for other texts, the nearest number for those out of range.
    static BOOL GetInteger(const Node& element, std::string_view path, int& value, int index = 0);
    static BOOL SetInteger(const Node& element, std::string_view path, int value, int index = 0);
    /// Read as atof has it, written as "%lg", so to six digits; always with a decimal point, whatever the locale.
    static BOOL GetDouble(const Node& element, std::string_view path, double& value, int index = 0);
    static BOOL SetDouble(const Node& element, std::string_view path, double value, int index = 0);
    /// "TRUE" and "FALSE". 1 exactly for "true" in any case; `value` is 0 in every other case, also when there is no node.
    static BOOL GetBool(const Node& element, std::string_view path, BOOL& value, int index = 0);
    static BOOL SetBool(const Node& element, std::string_view path, BOOL value, int index = 0);
    /// "05 May 2004 14:03:07", with the English names of months whatever the locale, or "INVALID" for a date that is not
    /// valid. Read by COleDateTime::ParseDateTime; what that cannot read is an invalid date, with the result 1. A missing
    /// node gives an invalid date and 0.
    static BOOL GetDate(const Node& element, std::string_view path, COleDateTime& value, int index = 0);
    static BOOL SetDate(const Node& element, std::string_view path, const COleDateTime& value, int index = 0);

    /// Each: Append the values at path, path[1], path[2] and so on up to the first that is missing (`mode` 0), or at
    /// the paths that `path`, a format with one "%d", gives for 0, 1, 2 and so on. Time is in line with the elements
    /// beside them for paths of names and indexes whose last step has none ("list/item"), and formats of such with "%d"
    /// as an index or in a name. Reading ends, too, where an index finds the node before it again, and behind more
    /// items than there are nodes.
    /// @return 1 when the array is not empty at the end. @throws CInvalidArgException* for a format without its "%d".
    static BOOL GetStringArray(const Node& element, std::string_view path, CStringArray& values, int mode = 0);
    static BOOL GetIntegerArray(const Node& element, std::string_view path, CUIntArray& values, int mode = 0);
    static BOOL GetDoubleArray(const Node& element, std::string_view path, CDoubleArray& values, int mode = 0);
    static BOOL GetBoolArray(const Node& element, std::string_view path, CUIntArray& values, int mode = 0);

    // Attributes and elements (xml/XmlValues.cpp)

    /// 0, and the output left alone, when there is no such attribute. Numbers are read as GetInteger reads them.
    static BOOL GetAttribute(const Element& element, std::string_view name, UINT& value);
    static BOOL GetAttribute(const Element& element, std::string_view name, CString& value);
    /// Sets an attribute, making it if it is missing. Always 1.
    static BOOL SetAttribute(const Element& element, std::string_view name, std::string_view value);
    static BOOL SetAttribute(const Element& element, std::string_view name, UINT value);
    /// The same.
    static void AddAttribute(const Element& element, std::string_view name, std::string_view value);
    static void AddAttribute(const Element& element, std::string_view name, UINT value);
    /// Append that attribute of every element that the path selects, in document order, leaving out those without it.
    /// @return 1 when the array is not empty at the end.
    static BOOL GetAttributeArray(const Node& element, std::string_view path, std::string_view name,
                                  CStringArray& values);
    static BOOL GetAttributeArray(const Node& element, std::string_view path, std::string_view name,
                                  CUIntArray& values);
    /// A new last child with this text or number in it.
    static Element AddElement(const Node& element, std::string_view tag, long value);
    static Element AddElement(const Node& element, std::string_view tag, std::string_view text);

    // Escaping for markup made by hand (xml/XmlEscape.cpp)
    //
    // What XML reserves becomes entities, and the bytes 0x80 to 0x9F character references with their number: "a<b" is
    // "a&lt;b", byte 0x93 "&#147;". In a code page with characters of several bytes only bytes that are no part of a
    // character count. Line ends and control characters pass. One pass; a CString that is not const is changed in place and
    // returned, any other text stays as it is.

    /// & < >
    static CString& Clean(CString& text);
    /// The inverse; every "\n" becomes "\r\n" besides. "&amp;lt;" gives "&lt;".
    static CString& Dirty(CString& text);
    /// & " ' < >
    static CString& CleanAttribute(CString& text);
    /// The inverse.
    static CString& DirtyAttribute(CString& text);
    /// Each: the changed copy.
    static CString Clean(const CString& text) { return Changed(text, Clean); }
    static CString Dirty(const CString& text) { return Changed(text, Dirty); }
    static CString CleanAttribute(const CString& text) { return Changed(text, CleanAttribute); }
    static CString DirtyAttribute(const CString& text) { return Changed(text, DirtyAttribute); }

protected:
    /// Each: The references alone.
    static void CleanInvalidChars(CString& text);
    static void DirtyInvalidChars(CString& text);
    /// Fills the arrays below, once, whoever comes first.
    static void SetupInvalidCharArray();

    /// Non-zero once the arrays are filled.
    static BOOL ms_bSetupInvalidCharArray;
    /// The texts of one byte 0x80 to 0x9F and the references to them. Empty until SetupInvalidCharArray.
    static CStringArray ms_InvalidCharsSearch, ms_InvalidCharsReplace;

private:
    static CString Changed(CString text, CString& (*change)(CString&)) { return std::move(change(text)); }

    CString m_xml;
};
