#pragma once

#include <cstddef>

namespace qv::platform {

/// Tells the system that all of this memory will be written soon, so that it may back it with large pages. Its content is
/// untouched, and nothing happens where the system takes no such advice (Windows).
void ExpectWriting(void* memory, std::size_t size);

}  // namespace qv::platform
