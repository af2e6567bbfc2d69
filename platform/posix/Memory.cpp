#include "platform/Memory.h"

#include <cstdint>

#include "platform/posix/System.h"

namespace qv::platform {

void ExpectWriting(void* memory, std::size_t size) {
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t first = (begin + page - 1) / page * page, end = (begin + size) / page * page;
    // Advice alone: the memory is as good without large pages.
    if (first < end) sys::madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE).IgnoreError();
}

}  // namespace qv::platform
