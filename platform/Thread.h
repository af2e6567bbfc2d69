#pragma once

/// @file Native threads.

#include <cstdint>

namespace qv::platform {

using ThreadFunction = unsigned (*)(void* argument);
using ThreadHandle = void*;

/// Starts a thread with the system's default stack; null if the system refuses. `id`, if not null, receives the
/// system's thread id.
ThreadHandle StartThread(ThreadFunction function, void* argument, std::uint32_t* id);
/// Closes the handle of a thread, which continues to run. No-op for null.
void CloseThread(ThreadHandle thread);

}  // namespace qv::platform
