#include "platform/Memory.h"

namespace qv::platform {

void AdviseLargePages(void*, std::size_t) {}

bool PopulateMemory(void*, std::size_t) {
    return false;
}

}  // namespace qv::platform
