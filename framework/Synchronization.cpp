#include "qvcommon/framework/Synchronization.h"

#include "platform/CriticalSection.h"

CCriticalSection::CCriticalSection() : m_section(qv::platform::MakeCriticalSection()) {}

CCriticalSection::~CCriticalSection() = default;

BOOL CCriticalSection::Lock() {
    qv::platform::Enter(*m_section);
    return 1;
}

BOOL CCriticalSection::Unlock() {
    qv::platform::Leave(*m_section);
    return 1;
}
