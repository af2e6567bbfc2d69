#pragma once

/// @file The root of the class hierarchy: run-time class records and CObject.

#include <iosfwd>

#include "qvcommon/Export.h"
#include "qvcommon/framework/Types.h"

class CArchive;
class CObject;

/// Run-time information about a class. One record per class, valid as long as the module that contains the class is
/// loaded.
struct QVCOMMON_API CRuntimeClass {
    /// Registers the record in the list of classes until its module is unloaded: run by the loader, one module at a
    /// time.
    CRuntimeClass(const char* name, int size, UINT schema, CObject*(QVCOMMON_CALL* create)(),
                  const CRuntimeClass* base);
    ~CRuntimeClass();
    CRuntimeClass(const CRuntimeClass&) = delete;
    CRuntimeClass& operator=(const CRuntimeClass&) = delete;

    const char* m_lpszClassName;                   ///< not copied
    int m_nObjectSize;                             ///< in bytes
    UINT m_wSchema;                                ///< 0xFFFF: objects of the class are not serializable
    CObject*(QVCOMMON_CALL* m_pfnCreateObject)();  ///< null: objects cannot be created by name
    const CRuntimeClass* m_pBaseClass;             ///< null for the root
    mutable const CRuntimeClass* m_pNextClass;     ///< the record registered before this one

    /// Returns true for the class itself and all its base classes.
    bool IsDerivedFrom(const CRuntimeClass* base) const;

    /// Returns a new object, owned by the caller; null if the class cannot be created by name.
    CObject* CreateObject() const;

    /// Returns the record of a class by its exact name, among the classes of all loaded modules, the last registered
    /// first; null if none exists.
    static const CRuntimeClass* FromName(const char* name);

    /// Returns the class registered last; the others follow by m_pNextClass.
    static const CRuntimeClass* First();
};

/// The output of Dump: a thin wrapper around a stream, which must outlive it.
class QVCOMMON_API CDumpContext {
public:
    /// Stores a reference to the stream.
    explicit CDumpContext(std::ostream& out) : m_out(out) {}
    /// Each: Writes the value; an address in hexadecimal digits.
    CDumpContext& operator<<(const char* text);
    CDumpContext& operator<<(const void* address);
    CDumpContext& operator<<(int value);

private:
    std::ostream& m_out;
};

/// The root object class. Its virtual operations, in slot order: GetRuntimeClass, the destructor, Serialize,
/// AssertValid, Dump. Derived value types declare their own copy operations.
class QVCOMMON_API CObject {
public:
    /// Returns the record of the object's class, or of the nearest base class that has a record.
    virtual const CRuntimeClass* GetRuntimeClass() const;
    virtual ~CObject();
    /// The base writes and reads nothing.
    virtual void Serialize(CArchive& archive);
    /// The base accepts every object.
    virtual void AssertValid() const;
    /// Writes the class's name and the object's address.
    virtual void Dump(CDumpContext& context) const;

    /// Returns true for an object of the class or of one derived from it, as far as they have records.
    bool IsKindOf(const CRuntimeClass* type) const { return GetRuntimeClass()->IsDerivedFrom(type); }

    /// The record of this class.
    static const CRuntimeClass classCObject;

protected:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
};

/// Returns the record of a class that declares one.
#define RUNTIME_CLASS(class_name) (&class_name::class##class_name)

/// Declares a run-time class record in the class's body; requires IMPLEMENT_DYNAMIC in one source file.
#define DECLARE_DYNAMIC(class_name)               \
public:                                           \
    static const CRuntimeClass class##class_name; \
    const CRuntimeClass* GetRuntimeClass() const override;

/// Defines the record declared by DECLARE_DYNAMIC, in one source file.
#define IMPLEMENT_DYNAMIC(class_name, base_name)                                                                 \
    const CRuntimeClass class_name::class##class_name(#class_name, static_cast<int>(sizeof(class_name)), 0xFFFF, \
                                                      nullptr, RUNTIME_CLASS(base_name));                        \
    const CRuntimeClass* class_name::GetRuntimeClass() const {                                                   \
        return RUNTIME_CLASS(class_name);                                                                        \
    }
