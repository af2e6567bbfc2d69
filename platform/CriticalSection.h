#pragma once

/// @file The system's own mutual exclusion within a process; a thread may enter more than once.

#include <memory>

namespace qv::platform {

class CriticalSection;

std::shared_ptr<CriticalSection> MakeCriticalSection();
void Enter(CriticalSection& section);
void Leave(CriticalSection& section);

}  // namespace qv::platform
