#pragma once

/// @file A tree of objects over a tree of elements: each wraps one element and owns the wrappers of its child elements,
/// whose classes are chosen by what the elements are called.

#include <memory>
#include <vector>

#include "qvcommon/XmlHelper.h"

class CXmlDomElement;
/// Wrappers that belong to their tree.
using CXmlDomElementArray = CArray<CXmlDomElement*, CXmlDomElement*>;

/// Applications derive from it and register their classes with CQVClassFactory, by the key of the elements they stand for:
/// the name, and, where the element has an attribute "typ", a blank and its markup: `item typ="big"`. Elements whose key
/// nobody registered, or registered with another kind of object, get no wrapper, nor does anything below them.
///
/// The wrappers of the children are made at the first access, and brought in step at the next one after each change made
/// through a wrapper: those of elements that are still there stay the objects that they are, those of new elements are
/// appended, those of vanished elements are destroyed. Changes made through the DOM alone are not noticed.
///
/// An empty wrapper, which has no element, raises _com_error with E_POINTER wherever an element is needed. The order of the
/// virtual members is part of the interface. A tree belongs to one thread.
class QVCOMMON_API CXmlDomElement : public CObject {
    DECLARE_DYNAMIC(CXmlDomElement)

public:
    /// Each: the DOM's handle.
    using Node = MSXML2::IXMLDOMNode;
    using Element = MSXML2::IXMLDOMElement;
    using Document = MSXML2::IXMLDOMDocument;

    /// Empty: no element, no document, no children.
    CXmlDomElement() = default;
    /// Destroys the wrappers below.
    ~CXmlDomElement() override;
    CXmlDomElement(const CXmlDomElement&) = delete;
    CXmlDomElement& operator=(const CXmlDomElement&) = delete;

    /// The key that the class of a wrapper is chosen by.
    virtual CString GetFullTag();
    /// Wraps an element, or nothing for a null one. A root of null makes this object the root.
    virtual void SetElement(const Element& element, CXmlDomElement* root = nullptr);
    /// The wrapper, somewhere below, of the first element at a path with its index (CXmlHelper), or null.
    /// @param fromDocument  not zero: the path starts at the document of the tree's elements, so with the name of its root,
    /// else at this element.
    /// @param create  not zero: a missing element is made first, with the path to it, if the path starts at the document.
    virtual CXmlDomElement* GetElement(std::string_view path, int index = 0, int fromDocument = 0, int create = 0);

    /// Each: the operation of CXmlHelper with this name on this element, with the same result. on this element, with
    /// the same results.
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

    /// Removes every node that a path selects from this element: elements, texts, attributes. 0 when there was none.
    virtual BOOL RemoveNodes(std::string_view path);
    /// Whether an element is wrapped.
    virtual BOOL HasDomElement();

    /// The wrapped element, its children in step.
    Element GetDomElement();
    /// The wrappers of the child elements, in step with them. Valid until the next change.
    const CXmlDomElementArray& GetChildren();
    /// The tree's own document: the root's; made, empty, synchronous and without validation, when there is none yet. The
    /// elements that SetElement was given may be of another.
    Document GetDomDoc();

    /// True for the wrapper of its document's root element.
    BOOL IsDocElement() const;
    /// The wrapper of the parent element, in the tree of this object's root; null when there is none.
    CXmlDomElement* GetParent();
    /// This object or the one below that wraps the node; null when none does.
    CXmlDomElement* FindElementForNode(const Node& node);
    /// The element's name as the document writes it.
    CString GetNodeName() const { return m_element.get_nodeName(); }
    /// CXmlHelper's path that leads from the given wrapper's element to this one; from the document for null.
    CString GetNodePath(const CXmlDomElement* base = nullptr) const;
    /// CXmlHelper::GetElementMask of the element.
    CString GetElementMask() const { return CXmlHelper::GetElementMask(m_element); }
    /// The markup of the element and all below it.
    CString GetXml() const { return m_element.get_xml(); }

    /// Loads a text into the tree's own document. The root wraps the new document element: none when the text does not parse,
    /// which is not raised. Other objects keep the elements of the old document. @return 0 when it does not parse.
    BOOL LoadXml(std::string_view xml);
    /// CXmlHelper::SetXml on this element.
    BOOL SetXml(std::string_view xml);
    /// CXmlHelper::AppendXml at the end of this element. @return the wrapper of the first element inserted, null when
    /// it has none.
    CXmlDomElement* AppendXml(std::string_view xml, BOOL root);

    /// Take a child's element out of the document and destroy its wrapper. 0, and nothing done, for what is no child.
    BOOL RemoveChild(CXmlDomElement* child);
    BOOL RemoveChild(int position);
    /// Moves a child, its element and its wrapper, to before the one in front of it. 0 for the first and for a position
    /// that does not exist.
    BOOL MoveChildUp(int position);
    /// Removes all child elements, wrapped or not; texts, comments and attributes stay.
    void RemoveChildren();
    /// Makes this element like the other: its attributes and content. Elements that are the same in both stay the nodes
    /// that they are, as do their wrappers (CXmlHelper::SetXml).
    void SyncNode(const CXmlDomElement& source);
    static void SyncNode(const Element& target, const Element& source);

private:
    void Parse();
    Document DocumentOfElements();
    std::vector<std::unique_ptr<CXmlDomElement>> MakeChildren(const std::vector<int>& indexes, std::vector<bool>& keep);
    std::unique_ptr<CXmlDomElement> MakeChild(const Element& element);
    void ParseAgain();
    bool HoldsElements(std::string_view path, int index) const;
    BOOL Changed(bool elements, BOOL result);
    void DeleteChildren();

    CXmlDomElement* m_root = nullptr;
    Document m_document;
    Element m_element;
    BOOL m_parsed = 0;
    CXmlDomElementArray m_children;
};
