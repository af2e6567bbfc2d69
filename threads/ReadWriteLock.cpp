#include "qvcommon/ReadWriteLock.h"

#include "threads/Turn.h"
#include "threads/WordLock.h"

struct CReadWriteLock::Lock : qv::WordLock<std::atomic<std::uint64_t>, qv::Turn> {};

CReadWriteLock::CReadWriteLock() : m_lock(std::make_shared<Lock>()) {}

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
