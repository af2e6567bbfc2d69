#pragma once

/// @file The root of the class tree: run-time class records and CObject.

#include <iosfwd>

#include "qvcommon/Export.h"
#include "qvcommon/framework/Types.h"

class CArchive;
class CObject;

/// What is known of a class while the program runs. One record a class, alive as long as the module that holds the class.
struct QVCOMMON_API CRuntimeClass {
    /// Enters the record into the list of classes, and leaves it with its module: run by the loader, one module at a time.
    CRuntimeClass(const char* name, int size, UINT schema, CObject*(QVCOMMON_CALL* create)(),
                  const CRuntimeClass* base);
    ~CRuntimeClass();
    CRuntimeClass(const CRuntimeClass&) = delete;
    CRuntimeClass& operator=(const CRuntimeClass&) = delete;

    const char* m_lpszClassName;                   ///< not copied
    int m_nObjectSize;                             ///< in bytes
    UINT m_wSchema;                                ///< 0xFFFF: objects of the class are not serialised
    CObject*(QVCOMMON_CALL* m_pfnCreateObject)();  ///< null: objects are not created by name
    const CRuntimeClass* m_pBaseClass;             ///< null for the root
    mutable const CRuntimeClass* m_pNextClass;     ///< the record entered before this one

    /// True for the class itself and every class above it.
    bool IsDerivedFrom(const CRuntimeClass* base) const;

    /// A new object, owned by the caller; null when the class cannot be created by name.
    CObject* CreateObject() const;

    /// The record of a class by its exact name, among the classes of all loaded modules, the last entered first; null when
    /// there is none.
    static const CRuntimeClass* FromName(const char* name);

    /// The class entered last; the others follow by m_pNextClass.
    static const CRuntimeClass* First();
};

/// Where Dump writes: a thin wrapper over a stream that outlives it.
class QVCOMMON_API CDumpContext {
public:
    /// Refers to the stream.
    explicit CDumpContext(std::ostream& out) : m_out(out) {}
    /// Each: writes the value; an address in hexadecimal digits.
    CDumpContext& operator<<(const char* text);
    CDumpContext& operator<<(const void* address);
    CDumpContext& operator<<(int value);

private:
    std::ostream& m_out;
};

/// The root object class. Its virtual operations, in slot order: GetRuntimeClass, the destructor, Serialize, AssertValid,
/// Dump. Derived classes that are values say so by declaring their own copy operations.
class QVCOMMON_API CObject {
public:
    /// The record of the object's own class, or of the nearest one above it that has a record.
    virtual const CRuntimeClass* GetRuntimeClass() const;
    virtual ~CObject();
    /// The base writes and reads nothing.
    virtual void Serialize(CArchive& archive);
    /// The base accepts every object.
    virtual void AssertValid() const;
    /// Writes the class's name and the object's address.
    virtual void Dump(CDumpContext& context) const;

    /// True for an object of the class or of one derived from it, as far as they have records.
    bool IsKindOf(const CRuntimeClass* type) const { return GetRuntimeClass()->IsDerivedFrom(type); }

    /// The record of this class.
    static const CRuntimeClass classCObject;

protected:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
};

/// The record of a class that declares one.
#define RUNTIME_CLASS(class_name) (&class_name::class##class_name)

/// Gives a class its run-time class record; stands in the class's body, IMPLEMENT_DYNAMIC in one source file.
#define DECLARE_DYNAMIC(class_name)               \
public:                                           \
    static const CRuntimeClass class##class_name; \
    const CRuntimeClass* GetRuntimeClass() const override;

/// Defines the record of a class that DECLARE_DYNAMIC declares, in one source file.
#define IMPLEMENT_DYNAMIC(class_name, base_name)                                                                 \
    const CRuntimeClass class_name::class##class_name(#class_name, static_cast<int>(sizeof(class_name)), 0xFFFF, \
                                                      nullptr, RUNTIME_CLASS(base_name));                        \
    const CRuntimeClass* class_name::GetRuntimeClass() const {                                                   \
        return RUNTIME_CLASS(class_name);                                                                        \
    }
