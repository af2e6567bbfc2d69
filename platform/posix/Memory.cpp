#include "platform/Memory.h"

#include <cstdint>

#include "platform/posix/System.h"

namespace qv::platform {
namespace {

/// Advises on the whole pages of the memory.
bool Advise(void* memory, std::size_t size, int advice) {
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t first = (begin + page - 1) / page * page, end = (begin + size) / page * page;
    return first >= end || sys::madvise(reinterpret_cast<void*>(first), end - first, advice).ok();
}

}  // namespace

void AdviseLargePages(void* memory, std::size_t size) {
    Advise(memory, size, MADV_HUGEPAGE);  // large pages are only an optimization
}

bool PopulateMemory(void* memory, std::size_t size) {
#ifdef MADV_POPULATE_WRITE
    return Advise(memory, size, MADV_POPULATE_WRITE);
#else
    return false;
#endif
}

}  // namespace qv::platform
