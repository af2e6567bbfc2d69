#pragma once

/// @file Native threads.

#include <cstdint>

namespace qv::platform {

using ThreadFunction = unsigned (*)(void* argument);
using ThreadHandle = void*;

/// Starts a thread with the system's default stack; null when the system refuses. `id`, where not null, gets the system's
/// number of the thread.
ThreadHandle StartThread(ThreadFunction function, void* argument, std::uint32_t* id);
/// Lets go of a thread, which runs on. Null does nothing.
void CloseThread(ThreadHandle thread);

}  // namespace qv::platform
