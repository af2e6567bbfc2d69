#pragma once

/// @file Objects that are saved to and loaded from sections of text (XmlSection.h).

#include "qvcommon/ClassFactory.h"
#include "qvcommon/framework/Collections.h"

class CXmlSection;

/// An object that is stored in a section. Derived classes are registered with CXmlObjectFactory by their type.
class QVCOMMON_API CXmlObject : public CObject {
    DECLARE_DYNAMIC(CXmlObject)

public:
    CXmlObject() = default;
    ~CXmlObject() override;

    /// Returns the type's name: the tag of the object's section, its blanks as "_".
    virtual CString GetType() const = 0;
    /// Writes the object's values to a section of its own, with the Add operations.
    virtual void SaveXml(CXmlSection& section) const = 0;
    /// Reads them back. Missing values get their defaults.
    virtual void LoadXml(const CXmlSection& section) = 0;
};

/// The objects are owned by the caller.
using CXmlObjectArray = CArray<CXmlObject*, CXmlObject*>;

/// Creates objects by the names of their types.
class QVCOMMON_API CXmlObjectFactory {
public:
    /// Registers a class with a default constructor under its type, replacing an earlier one. Thread-safe, as all
    /// members are.
    template <class T>
    static CQVClassFactory::Registration Register(std::string_view type) {
        return CQVClassFactory::Register<T>(KeyOf(type));
    }
    /// Returns whether the type was registered.
    static bool Unregister(std::string_view type) { return CQVClassFactory::Unregister(KeyOf(type)); }
    /// Unregisters the type unless it has been registered again since. Returns whether it was unregistered.
    static bool Unregister(std::string_view type, CQVClassFactory::Registration registration) {
        return CQVClassFactory::Unregister(KeyOf(type), registration);
    }
    /// Returns a new object, owned by the caller; null for a type that is not registered. Blanks and "_" are
    /// equivalent.
    static CXmlObject* CreateObject(std::string_view type);

private:
    static CString KeyOf(std::string_view type);
};
