#include "qvcommon/framework/Module.h"

namespace {

CDynLinkLibrary* g_firstLibrary = nullptr;

}  // namespace

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& module, void* handle) {
    if (!handle) return 0;
    if (module.bInitialized) return 1;
    module = {.bInitialized = 1, .hModule = handle, .pFirstSharedClass = CRuntimeClass::First()};
    return 1;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& module, BOOL all) {
    if (!module.bInitialized) return;
    for (const CDynLinkLibrary* library = g_firstLibrary; library;) {
        const CDynLinkLibrary* const next = library->GetNext();
        if (all || &library->GetModule() == &module) delete library;
        library = next;
    }
    module = {};
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& module, BOOL system)
    : m_module(module), m_system(system != 0), m_next(g_firstLibrary) {
    g_firstLibrary = this;
}

CDynLinkLibrary::~CDynLinkLibrary() {
    CDynLinkLibrary** link = &g_firstLibrary;
    while (*link && *link != this) link = &(*link)->m_next;
    if (*link) *link = m_next;
}

const CDynLinkLibrary* CDynLinkLibrary::GetFirst() {
    return g_firstLibrary;
}
