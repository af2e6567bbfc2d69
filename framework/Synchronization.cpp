#include "qvcommon/framework/Synchronization.h"

BOOL CCriticalSection::Lock() {
    m_mutex.lock();
    return 1;
}

BOOL CCriticalSection::Unlock() {
    m_mutex.unlock();
    return 1;
}
