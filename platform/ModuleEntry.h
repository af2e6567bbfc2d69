#pragma once

/// @file The library's entry point belongs to the system: DllMain on Windows, the constructor and destructor of the shared
/// object elsewhere. The one contract it keeps is to tell these two, once each.

namespace qv::platform {

/// Provided by the library above. `module` is the system's handle of the library.
/// LibraryLoaded returns false to make the load fail, where the system lets it (Windows).
bool LibraryLoaded(void* module);
void LibraryUnloaded(void* module);

}  // namespace qv::platform
