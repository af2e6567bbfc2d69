#include "platform/ReadWriteLock.h"

#include "platform/WordLock.h"

namespace qv::platform {

class ReadWriteLock : public WordLock<std::atomic> {};

std::shared_ptr<ReadWriteLock> MakeReadWriteLock() {
    return std::make_shared<ReadWriteLock>();
}

void StartRead(ReadWriteLock& lock) {
    lock.StartRead();
}

void EndRead(ReadWriteLock& lock) {
    lock.EndRead();
}

void StartWrite(ReadWriteLock& lock) {
    lock.StartWrite();
}

void EndWrite(ReadWriteLock& lock) {
    lock.EndWrite();
}

}  // namespace qv::platform
