#include "core/Module.h"

#include "platform/ModuleEntry.h"

namespace qv {
namespace {

constinit AFX_EXTENSION_MODULE g_module;

bool Attach(void* module, AFX_EXTENSION_MODULE& record) {
    if (!AfxInitExtensionModule(record, module)) return false;
    new CDynLinkLibrary(record, 0);
    return true;
}

}  // namespace

bool ModuleEntry(void* module, ModuleEvent event, AFX_EXTENSION_MODULE& record) {
    switch (event) {
        case ModuleEvent::ProcessAttach: return Attach(module, record);
        case ModuleEvent::ProcessDetach: AfxTermExtensionModule(record, 0); return true;
        default: return true;
    }
}

namespace platform {

bool LibraryLoaded(void* module) {
    return ModuleEntry(module, ModuleEvent::ProcessAttach, g_module);
}

void LibraryUnloaded(void* module) {
    ModuleEntry(module, ModuleEvent::ProcessDetach, g_module);
}

}  // namespace platform
}  // namespace qv
