#pragma once

/// @file Registration when the library is loaded into a process and unloaded.

#include "qvcommon/framework/Module.h"

namespace qv {

enum class ModuleEvent { ProcessAttach, ProcessDetach, ThreadAttach, ThreadDetach };

/// Registers the library as an extension module when a process attaches, and unregisters it when it detaches; threads
/// are ignored. Called under the loader lock: it does nothing else.
/// @return false only if registering failed, which makes the load fail; nothing is registered then.
bool ModuleEntry(void* module, ModuleEvent event, AFX_EXTENSION_MODULE& record);

}  // namespace qv
