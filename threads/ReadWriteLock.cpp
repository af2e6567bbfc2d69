#include "qvcommon/ReadWriteLock.h"

#include "threads/EventCount.h"
#include "threads/WordLock.h"

struct CReadWriteLock::Lock : qv::WordLock<std::atomic<std::uint64_t>, qv::EventCount> {};

CReadWriteLock::CReadWriteLock() : m_lock(std::make_shared<Lock>()) {}

CReadWriteLock::CReadWriteLock(const CReadWriteLock& other) : m_lock(std::make_shared<Lock>(*other.m_lock)) {}

CReadWriteLock& CReadWriteLock::operator=(const CReadWriteLock& other) {
    if (this != &other) m_lock = std::make_shared<Lock>(*other.m_lock);
    return *this;
}

void CReadWriteLock::EndReadOfDeleted() {
    const std::shared_ptr<Lock> kept = m_lock;
    kept->EndRead();
}

void CReadWriteLock::EndWriteOfDeleted() {
    const std::shared_ptr<Lock> kept = m_lock;
    kept->EndWrite();
}

void CReadWriteLock::StartRead() {
    m_lock->StartRead();
}

void CReadWriteLock::EndRead() {
    m_lock->EndRead();
}

void CReadWriteLock::StartWrite() {
    m_lock->StartWrite();
}

void CReadWriteLock::EndWrite() {
    m_lock->EndWrite();
}
