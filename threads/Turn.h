#pragma once

/// @file The wait queue of a lock.

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace qv {

/// A counter of turns. A thread reads the counter, finds that it must wait, and sleeps until the counter has changed: a
/// turn that ends in between is not missed.
///
/// Replaces std::atomic::wait: if the platform has no system call for it, as in MinGW's GCC 12, that reads the value
/// and then enters a condition variable, and a notification between the two is lost.
///
/// A mutex or condition variable that fails ends the program: the lock's state cannot be restored.
class Turn {
public:
    /// Synchronizes with the end of the previous turn.
    std::uint64_t Now() const noexcept {
        const std::scoped_lock lock(m_mutex);
        return m_number;
    }

    /// Returns once `turn` has ended.
    void WaitFor(std::uint64_t turn) noexcept {
        std::unique_lock lock(m_mutex);
        m_ended.wait(lock, [&] { return m_number != turn; });
    }

    /// Ends the turn, and wakes one or all waiting threads. A thread that has read the turn but is not sleeping yet
    /// will not sleep.
    void EndForOne() noexcept {
        Advance();
        m_ended.notify_one();
    }
    void EndForAll() noexcept {
        Advance();
        m_ended.notify_all();
    }

private:
    void Advance() {
        const std::scoped_lock lock(m_mutex);
        ++m_number;
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_ended;
    std::uint64_t m_number = 0;
};

}  // namespace qv
