#include "platform/ReadWriteLock.h"

#include <new>

#include "platform/windows/Owned.h"

namespace qv::platform {
namespace {

void WaitFor(const Owned& object) {
    ::WaitForSingleObject(object.Get(), INFINITE);
}

// The mutex of the lock, for the length of a scope.
class Guard {
public:
    explicit Guard(const Owned& mutex) : m_mutex(mutex.Get()) { Enter(); }
    ~Guard() { Leave(); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

    void WaitOutside(const Owned& event) {
        Leave();
        WaitFor(event);
        Enter();
    }

private:
    void Enter() { ::WaitForSingleObject(m_mutex, INFINITE); }
    void Leave() { ::ReleaseMutex(m_mutex); }

    HANDLE m_mutex;
};

}  // namespace

class ReadWriteLock {
public:
    ReadWriteLock() {
        if (!m_readersEvent || !m_writerEvent || !m_guard) throw std::bad_alloc();
    }

    void StartRead() {
        Guard guard(m_guard);
        while (m_state < 0 || m_waitingWriters > 0) {
            ++m_waitingReaders;
            guard.WaitOutside(m_readersEvent);
            if (--m_waitingReaders == 0) ::ResetEvent(m_readersEvent.Get());
        }
        ++m_state;
    }

    void StartWrite() {
        Guard guard(m_guard);
        // Readers that come from now on have to wait; a signal left over from an earlier turn would let them spin.
        ::ResetEvent(m_readersEvent.Get());
        while (m_state != 0) {
            ++m_waitingWriters;
            guard.WaitOutside(m_writerEvent);
            --m_waitingWriters;
        }
        m_state = -1;
    }

    void EndRead() {
        long waiting = 0;
        {
            const Guard guard(m_guard);
            if (--m_state == 0) waiting = m_waitingWriters;
        }
        if (waiting > 0) ::SetEvent(m_writerEvent.Get());
    }

    void EndWrite() {
        long waiting = 0;
        {
            const Guard guard(m_guard);
            m_state = 0;
            waiting = m_waitingWriters;
        }
        ::SetEvent(waiting > 0 ? m_writerEvent.Get() : m_readersEvent.Get());
    }

private:
    long m_state = 0;  // readers; -1 while a writer has it
    long m_waitingReaders = 0, m_waitingWriters = 0;
    Owned m_readersEvent{::CreateEventA(nullptr, TRUE, FALSE, nullptr)};
    Owned m_writerEvent{::CreateEventA(nullptr, FALSE, FALSE, nullptr)};
    Owned m_guard{::CreateMutexA(nullptr, FALSE, nullptr)};
};

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
