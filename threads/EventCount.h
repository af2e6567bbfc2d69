#pragma once

/// @file The wait queue of a lock.

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace qv {

/// An event count. A thread reads the count, finds that it must wait, and sleeps until the count has changed: a
/// notification in between is not missed.
///
/// Replaces std::atomic::wait: if the platform has no system call for it, as in MinGW's GCC 12, that reads the value
/// and then enters a condition variable, and a notification between the two is lost.
///
/// A mutex or condition variable that fails ends the program: the lock's state cannot be restored.
class EventCount {
public:
    /// Returns the count; synchronizes with the last notification.
    std::uint64_t Count() const noexcept {
        const std::scoped_lock lock(m_mutex);
        return m_count;
    }

    /// Returns once the count differs from `count`.
    void WaitWhile(std::uint64_t count) noexcept {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_count != count; });
    }

    /// Advances the count, and wakes one or all waiting threads. A thread that has read the old count but is not
    /// sleeping yet will not sleep.
    void NotifyOne() noexcept {
        Advance();
        m_changed.notify_one();
    }
    void NotifyAll() noexcept {
        Advance();
        m_changed.notify_all();
    }

private:
    void Advance() {
        const std::scoped_lock lock(m_mutex);
        ++m_count;
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::uint64_t m_count = 0;
};

}  // namespace qv
