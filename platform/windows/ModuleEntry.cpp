#include "platform/ModuleEntry.h"

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) return qv::platform::LibraryLoaded(instance);
    if (reason == DLL_PROCESS_DETACH) qv::platform::LibraryUnloaded(instance);
    return TRUE;
}
