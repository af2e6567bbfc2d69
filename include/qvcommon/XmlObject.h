#pragma once

/// @file Objects that save themselves into sections of text (XmlSection.h) and load from them.

#include "qvcommon/ClassFactory.h"
#include "qvcommon/framework/Collections.h"

class CXmlSection;

/// An object that keeps itself in a section. Derived classes are registered with CXmlObjectFactory by their type.
class QVCOMMON_API CXmlObject : public CObject {
    DECLARE_DYNAMIC(CXmlObject)

public:
    CXmlObject() = default;
    ~CXmlObject() override;

    /// The type's name: the tag of the object's section, its blanks as "_".
    virtual CString GetType() const = 0;
    /// Writes the object's values into a section of its own, with the Add operations.
    virtual void SaveXml(CXmlSection& section) const = 0;
    /// Reads them back. What is missing has its default value.
    virtual void LoadXml(const CXmlSection& section) = 0;
};

/// The objects are the caller's to delete.
using CXmlObjectArray = CArray<CXmlObject*, CXmlObject*>;

/// Makes objects by the names of their types.
class QVCOMMON_API CXmlObjectFactory {
public:
    /// Makes a class with a default constructor known by its type, in place of an earlier one. Safe from any thread, as
    /// all
    /// members are.
    template <class T>
    static void Register(std::string_view type) {
        CQVClassFactory::Register<T>(KeyOf(type));
    }
    /// Returns whether the type was known.
    static bool Unregister(std::string_view type) { return CQVClassFactory::Unregister(KeyOf(type)); }
    /// A new object, owned by the caller; null for a type that nobody registered. Blanks and "_" are the same.
    static CXmlObject* CreateObject(std::string_view type);

private:
    static CString KeyOf(std::string_view type);
};
