#include "platform/ModuleEntry.h"

#include <dlfcn.h>

namespace {

void* ThisModule() {
    Dl_info info{};
    return ::dladdr(reinterpret_cast<void*>(&ThisModule), &info) ? info.dli_fbase : nullptr;
}

__attribute__((constructor)) void Load() {
    qv::platform::LibraryLoaded(ThisModule());
}
__attribute__((destructor)) void Unload() {
    qv::platform::LibraryUnloaded(ThisModule());
}

}  // namespace
