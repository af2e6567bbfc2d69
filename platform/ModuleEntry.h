#pragma once

/// @file The library's entry point is system-specific: DllMain on Windows, the constructor and destructor of the shared
/// object elsewhere. It calls these two functions, once each.

namespace qv::platform {

/// Implemented by the layer above. `module` is the system's handle of the library. LibraryLoaded returns false to make
/// the load fail, where the system supports it (Windows).
bool LibraryLoaded(void* module);
void LibraryUnloaded(void* module);

}  // namespace qv::platform
