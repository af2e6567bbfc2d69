#pragma once

#include <cstddef>

namespace qv::platform {

/// Tells the system that all of this memory will be written soon, so that it may back it with large pages. Its content is
/// untouched, and nothing happens where the system takes no such advice (Windows).
void ExpectWriting(void* memory, std::size_t size);

/// Has the system provide this memory now, so that writing it does not wait for that. Any thread, beside others that write
/// to it. False where the system has no such call (Windows, Linux before 5.14): the memory comes as it is written then.
bool ProvideMemory(void* memory, std::size_t size);

}  // namespace qv::platform
