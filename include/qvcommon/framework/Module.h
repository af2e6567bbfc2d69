#pragma once

/// @file How a shared library joins the framework as an extension module.

#include "qvcommon/framework/Object.h"

/// One record a module, a global of the module.
struct AFX_EXTENSION_MODULE {
    BOOL bInitialized = 0;                             ///< AfxInitExtensionModule has filled the record
    void* hModule = nullptr;                           ///< the system's handle of the module
    const CRuntimeClass* pFirstSharedClass = nullptr;  ///< the class entered last when the record was filled
};

/// Fills the record from the module's handle.
/// @return 0, and nothing changed, without a handle; 1 otherwise, also when the record is filled already.
QVCOMMON_API BOOL QVCOMMON_CALL AfxInitExtensionModule(AFX_EXTENSION_MODULE& module, void* handle);

/// Ends the CDynLinkLibrary objects of the module, or, with `all` non-zero, of every module. Does nothing for a record
/// that was never filled.
QVCOMMON_API void QVCOMMON_CALL AfxTermExtensionModule(AFX_EXTENSION_MODULE& module, BOOL all = 0);

/// A module's place in the chain of extension modules. Made with new, once, when the module is loaded; ended by
/// AfxTermExtensionModule.
class QVCOMMON_API CDynLinkLibrary {
public:
    /// Joins the chain at its front. The record must outlive this object; `system` marks a part of the framework
    /// itself.
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& module, BOOL system = 0);
    ~CDynLinkLibrary();
    CDynLinkLibrary(const CDynLinkLibrary&) = delete;
    CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;

    /// The record that the constructor got.
    const AFX_EXTENSION_MODULE& GetModule() const { return m_module; }
    /// Whether it is a part of the framework itself.
    bool IsSystem() const { return m_system; }
    /// The library that joined before this one; null for the first.
    const CDynLinkLibrary* GetNext() const { return m_next; }
    /// The library that joined last; null while there is none.
    static const CDynLinkLibrary* GetFirst();

private:
    AFX_EXTENSION_MODULE& m_module;
    bool m_system;
    CDynLinkLibrary* m_next;
};
