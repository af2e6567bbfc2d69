#include "qvcommon/ReadWriteLock.h"

#include "platform/ReadWriteLock.h"

namespace platform = qv::platform;

CReadWriteLock::CReadWriteLock() : m_lock(platform::MakeReadWriteLock()) {}

void CReadWriteLock::StartRead() {
    platform::StartRead(*m_lock);
}

void CReadWriteLock::EndRead() {
    platform::EndRead(*m_lock);
}

void CReadWriteLock::StartWrite() {
    platform::StartWrite(*m_lock);
}

void CReadWriteLock::EndWrite() {
    platform::EndWrite(*m_lock);
}
