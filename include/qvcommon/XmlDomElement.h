#pragma once

/// @file A tree of wrapper objects for a tree of elements: each wraps one element and owns the wrappers of its child
/// elements, whose classes are selected by the elements' names.

#include <memory>
#include <vector>

#include "qvcommon/XmlHelper.h"

class CXmlDomElement;
/// Wrappers owned by their tree.
using CXmlDomElementArray = CArray<CXmlDomElement*, CXmlDomElement*>;

/// Applications derive from it and register their classes with CQVClassFactory, under the key of the elements that they
/// represent: the name, and, if the element has an attribute "typ", a blank and its markup: `item typ="big"`. Elements
/// whose key is not registered, or registered with another kind of object, get no wrapper, nor do their descendants.
///
/// The wrappers of the children are created on first access, and updated on the next access after each change made
/// through a wrapper: elements that still exist keep their wrapper objects, wrappers of new elements are appended,
/// those of removed elements are destroyed. Changes made only through the DOM are not noticed.
///
/// An empty wrapper, which has no element, raises _com_error with E_POINTER wherever an element is needed. The order of
/// the virtual members is part of the interface. A tree must be used by one thread only.
class QVCOMMON_API CXmlDomElement : public CObject {
    DECLARE_DYNAMIC(CXmlDomElement)

public:
    /// Each: The DOM's handle.
    using Node = MSXML2::IXMLDOMNode;
    using Element = MSXML2::IXMLDOMElement;
    using Document = MSXML2::IXMLDOMDocument;

    /// Empty: no element, no document, no children.
    CXmlDomElement() = default;
    /// Destroys the wrappers of all descendants.
    ~CXmlDomElement() override;
    CXmlDomElement(const CXmlDomElement&) = delete;
    CXmlDomElement& operator=(const CXmlDomElement&) = delete;

    /// Returns the key that selects the class of a wrapper.
    virtual CString GetFullTag();
    /// Wraps an element, or nothing for a null one. A null root makes this object the root.
    virtual void SetElement(const Element& element, CXmlDomElement* root = nullptr);
    /// Returns the wrapper, a descendant, of the first element at a path with its index (CXmlHelper), or null.
    /// @param fromDocument  non-zero: the path starts at the document of the tree's elements, and thus with the name of
    /// its root, else at this element.
    /// @param create  non-zero: a missing element is created first, with the path to it, if the path starts at the
    /// document.
    virtual CXmlDomElement* GetElement(std::string_view path, int index = 0, int fromDocument = 0, int create = 0);

    /// Each: Performs the operation of CXmlHelper with this name on this element, with the same result.
    virtual BOOL GetAttribute(std::string_view name, CString& value);
    virtual BOOL SetAttribute(std::string_view name, std::string_view value);
    virtual BOOL GetAttributeArray(std::string_view path, std::string_view name, CStringArray& values);
    virtual BOOL SetString(std::string_view path, std::string_view value, int index = 0);
    virtual BOOL GetString(std::string_view path, CString& value, int index = 0);
    virtual CString GetInnerXml();
    virtual BOOL GetStringArray(std::string_view path, CStringArray& values, int mode = 0);
    virtual BOOL GetInteger(std::string_view path, int& value, int index = 0);
    virtual BOOL SetInteger(std::string_view path, int value, int index = 0);
    virtual BOOL GetIntegerArray(std::string_view path, CUIntArray& values, int mode = 0);
    virtual BOOL GetDouble(std::string_view path, double& value, int index = 0);
    virtual BOOL SetDouble(std::string_view path, double value, int index = 0);
    virtual BOOL GetBool(std::string_view path, BOOL& value, int index = 0);
    virtual BOOL SetBool(std::string_view path, BOOL value, int index = 0);
    virtual BOOL GetBoolArray(std::string_view path, CUIntArray& values, int mode = 0);
    virtual BOOL GetDate(std::string_view path, COleDateTime& value, int index = 0);
    virtual BOOL SetDate(std::string_view path, const COleDateTime& value, int index = 0);

    /// Removes every node that a path selects from this element: elements, texts, attributes. Returns 0 if there was
    /// none.
    virtual BOOL RemoveNodes(std::string_view path);
    /// Returns whether an element is wrapped.
    virtual BOOL HasDomElement();

    /// Returns the wrapped element, with updated child wrappers.
    Element GetDomElement();
    /// Returns the updated wrappers of the child elements. Valid until the next change.
    const CXmlDomElementArray& GetChildren();
    /// Returns the tree's own document: the root's; created, empty, synchronous and without validation, if none exists
    /// yet. The elements passed to SetElement may belong to another.
    Document GetDomDoc();

    /// Returns true for the wrapper of its document's root element.
    BOOL IsDocElement() const;
    /// Returns the wrapper of the parent element, in the tree of this object's root; null if none exists.
    CXmlDomElement* GetParent();
    /// Returns this object or the descendant that wraps the node; null if none exists.
    CXmlDomElement* FindElementForNode(const Node& node);
    /// Returns the element's name as written in the document.
    CString GetNodeName() const { return m_element.get_nodeName(); }
    /// Returns CXmlHelper's path from the given wrapper's element to this one; from the document for null.
    CString GetNodePath(const CXmlDomElement* base = nullptr) const;
    /// Returns CXmlHelper::GetElementMask of the element.
    CString GetElementMask() const { return CXmlHelper::GetElementMask(m_element); }
    /// Returns the markup of the element and its descendants.
    CString GetXml() const { return m_element.get_xml(); }

    /// Loads a string into the tree's own document. The root wraps the new document element: none if the string does
    /// not parse, which raises nothing. Other objects keep the elements of the old document. @return 0 if it does not
    /// parse.
    BOOL LoadXml(std::string_view xml);
    /// Performs CXmlHelper::SetXml on this element.
    BOOL SetXml(std::string_view xml);
    /// Performs CXmlHelper::AppendXml at the end of this element. @return the wrapper of the first inserted element,
    /// null if it has none.
    CXmlDomElement* AppendXml(std::string_view xml, BOOL root);

    /// Each: Removes a child's element from the document and destroys its wrapper. Returns 0, without effect, if it is
    /// not a child.
    BOOL RemoveChild(CXmlDomElement* child);
    BOOL RemoveChild(int position);
    /// Moves a child, its element and its wrapper, before the preceding one. Returns 0 for the first and for a position
    /// that does not exist.
    BOOL MoveChildUp(int position);
    /// Removes all child elements, wrapped or not; texts, comments and attributes are kept.
    void RemoveChildren();
    /// Makes this element equal to the other: its attributes and content. Elements that are the same in both keep their
    /// nodes and wrappers (CXmlHelper::SetXml). @throws _com_error E_INVALIDARG if an attribute's prefix has another
    /// namespace here; nothing is changed then.
    void SyncNode(const CXmlDomElement& source);
    static void SyncNode(const Element& target, const Element& source);

private:
    void Parse();
    Document DocumentOfElements();
    std::vector<std::unique_ptr<CXmlDomElement>> MakeChildren(const std::vector<int>& indexes, std::vector<bool>& keep);
    std::unique_ptr<CXmlDomElement> MakeChild(const Element& element);
    void ParseAgain();
    void PrepareText(std::string_view path, int index);
    void PrepareChange(const Node& node);
    void DeleteChildren();

    CXmlDomElement* m_root = nullptr;
    Document m_document;
    Element m_element;
    BOOL m_parsed = 0;
    CXmlDomElementArray m_children;
};
