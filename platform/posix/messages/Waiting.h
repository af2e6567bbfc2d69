#pragma once

/// @file Waiting for a descriptor while the calling thread's windows continue to receive messages.

#include <algorithm>
#include <chrono>
#include <optional>

namespace qv::platform::messages {

/// Polls for up to 30 microseconds before a thread sleeps: sleeping and waking takes longer than an answer, or the next
/// text of a busy conversation, if the other end runs on another processor. After each failure the poller skips more
/// calls, up to 127.
class SpinPoller {
public:
    /// Returns the calling thread's poller.
    static SpinPoller& Own();

    /// Calls `isReady` until it returns true; returns false if the call was skipped or the limit has passed. The few
    /// microseconds are measured by the machine's clock, even if another clock is installed.
    template <class IsReady>
    bool SpinUntil(IsReady isReady, std::chrono::nanoseconds limit) {
        using Clock = std::chrono::steady_clock;
        if (m_skipsLeft > 0) {
            --m_skipsLeft;
            return false;
        }
        const auto end = Clock::now() + std::min<std::chrono::nanoseconds>(limit, std::chrono::microseconds(30));
        bool ready = isReady();
        while (!ready && Clock::now() < end) ready = isReady();
        m_skipsAfterFailure = ready ? 0 : std::min(2 * m_skipsAfterFailure + 1, 127);
        m_skipsLeft = m_skipsAfterFailure;
        return ready;
    }

private:
    int m_skipsAfterFailure = 0, m_skipsLeft = 0;
};

enum class WokenBy { Message, Descriptor, Timeout };

/// Handles messages for the calling thread's windows until the descriptor is ready, or `end` is reached; without a
/// descriptor (-1) until one message has been handled. Without an `end` there is no timeout.
WokenBy WaitFor(int descriptor, short events, std::optional<std::chrono::steady_clock::time_point> end);

}  // namespace qv::platform::messages
