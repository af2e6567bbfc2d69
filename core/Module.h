#pragma once

/// @file What happens when the library joins and leaves a process.

#include "qvcommon/framework/Module.h"

namespace qv {

enum class ModuleEvent { ProcessAttach, ProcessDetach, ThreadAttach, ThreadDetach };

/// Registers the library as an extension module when a process attaches, and ends the registration when it detaches;
/// threads come and go without notice. Runs under the loader's lock: it does nothing there but this.
/// @return false only when registering failed, which makes the load fail; nothing is registered then.
bool ModuleEntry(void* module, ModuleEvent event, AFX_EXTENSION_MODULE& record);

}  // namespace qv
