#include "platform/CriticalSection.h"

#include <mutex>

namespace qv::platform {

class CriticalSection {
public:
    std::recursive_mutex mutex;
};

std::shared_ptr<CriticalSection> MakeCriticalSection() {
    return std::make_shared<CriticalSection>();
}

void Enter(CriticalSection& section) {
    section.mutex.lock();
}

void Leave(CriticalSection& section) {
    section.mutex.unlock();
}

}  // namespace qv::platform
