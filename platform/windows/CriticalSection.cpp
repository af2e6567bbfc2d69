#include "platform/CriticalSection.h"

#include <windows.h>

namespace qv::platform {

class CriticalSection {
public:
    CriticalSection() { ::InitializeCriticalSection(&section); }
    ~CriticalSection() { ::DeleteCriticalSection(&section); }
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    CRITICAL_SECTION section;
};

std::shared_ptr<CriticalSection> MakeCriticalSection() {
    return std::make_shared<CriticalSection>();
}

void Enter(CriticalSection& section) {
    ::EnterCriticalSection(&section.section);
}

void Leave(CriticalSection& section) {
    ::LeaveCriticalSection(&section.section);
}

}  // namespace qv::platform
