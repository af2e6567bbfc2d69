#pragma once

#include <pthread.h>

#include <cstdlib>

/// The system's own read-write lock, set to prefer writers.
class WriterFirstLock {
public:
    WriterFirstLock() {
        pthread_rwlockattr_t attributes;
        ::pthread_rwlockattr_init(&attributes);
        ::pthread_rwlockattr_setkind_np(&attributes, PTHREAD_RWLOCK_PREFER_WRITER_NONRECURSIVE_NP);
        if (::pthread_rwlock_init(&m_lock, &attributes)) std::abort();
        ::pthread_rwlockattr_destroy(&attributes);
    }
    ~WriterFirstLock() { ::pthread_rwlock_destroy(&m_lock); }
    WriterFirstLock(const WriterFirstLock&) = delete;
    WriterFirstLock& operator=(const WriterFirstLock&) = delete;

    void lock_shared() { ::pthread_rwlock_rdlock(&m_lock); }
    void unlock_shared() { ::pthread_rwlock_unlock(&m_lock); }
    void lock() { ::pthread_rwlock_wrlock(&m_lock); }
    void unlock() { ::pthread_rwlock_unlock(&m_lock); }

private:
    pthread_rwlock_t m_lock;
};
