#pragma once

/// @file Registration of a shared library as an extension module.

#include "qvcommon/framework/Object.h"

/// One global record per module.
struct AFX_EXTENSION_MODULE {
    BOOL bInitialized = 0;                             ///< AfxInitExtensionModule has filled the record
    void* hModule = nullptr;                           ///< the system's handle of the module
    const CRuntimeClass* pFirstSharedClass = nullptr;  ///< the class registered last when the record was filled
};

/// Fills the record from the module's handle.
/// @return 0, without changes, for a null handle; 1 otherwise, also if the record is already filled.
QVCOMMON_API BOOL QVCOMMON_CALL AfxInitExtensionModule(AFX_EXTENSION_MODULE& module, void* handle);

/// Destroys the CDynLinkLibrary objects of the module, or, with `all` non-zero, of every module. No-op for a record
/// that was never filled.
QVCOMMON_API void QVCOMMON_CALL AfxTermExtensionModule(AFX_EXTENSION_MODULE& module, BOOL all = 0);

/// A module's entry in the chain of extension modules. Create it with new, once, when the module is loaded; it is
/// destroyed by AfxTermExtensionModule.
class QVCOMMON_API CDynLinkLibrary {
public:
    /// Prepends itself to the chain. The record must outlive this object; `system` marks a part of the framework
    /// itself.
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& module, BOOL system = 0);
    ~CDynLinkLibrary();
    CDynLinkLibrary(const CDynLinkLibrary&) = delete;
    CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;

    /// Returns the constructor's record.
    const AFX_EXTENSION_MODULE& GetModule() const { return m_module; }
    /// Returns whether it is part of the framework itself.
    bool IsSystem() const { return m_system; }
    /// Returns the library registered before this one; null for the first.
    const CDynLinkLibrary* GetNext() const { return m_next; }
    /// Returns the library registered last; null if none exists.
    static const CDynLinkLibrary* GetFirst();

private:
    AFX_EXTENSION_MODULE& m_module;
    bool m_system;
    CDynLinkLibrary* m_next;
};
