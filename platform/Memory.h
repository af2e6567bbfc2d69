#pragma once

#include <cstddef>

namespace qv::platform {

/// Advises the system that all of this memory will be written soon, so that it may use large pages. The content is
/// unchanged; a no-op where the system has no such call (Windows).
void AdviseLargePages(void* memory, std::size_t size);

/// Makes the system populate this memory now, so that writing to it causes no page faults. Thread-safe, even while
/// others write to it. Returns false if the system has no such call (Windows, Linux before 5.14): pages are then
/// populated when written.
bool PopulateMemory(void* memory, std::size_t size);

}  // namespace qv::platform
