#pragma once

/// @file Where the threads that wait for a lock sleep.

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace qv {

/// A number of turns. A thread reads the number, finds that it must wait, and sleeps until the number has changed: a
/// turn that ends in between is not missed.
///
/// In place of std::atomic::wait: where that has no system call of its own below it, as in MinGW's GCC 12, it reads the
/// value and then enters a condition variable, and a notification between the two is lost.
///
/// A mutex or condition variable that fails ends the program: the lock's state cannot be taken back.
class Turn {
public:
    /// Synchronizes with the end of the turn before.
    std::uint64_t Now() const noexcept {
        const std::scoped_lock lock(m_mutex);
        return m_number;
    }

    /// Returns once `turn` is over.
    void WaitFor(std::uint64_t turn) noexcept {
        std::unique_lock lock(m_mutex);
        m_ended.wait(lock, [&] { return m_number != turn; });
    }

    /// Ends the turn, and wakes one or all of those who wait for that. Who has seen the turn but does not sleep yet
    /// will not.
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
