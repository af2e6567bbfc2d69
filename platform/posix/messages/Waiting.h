#pragma once

/// @file Waiting for a descriptor while the calling thread's windows go on taking messages.

#include <algorithm>
#include <chrono>
#include <optional>

namespace qv::platform::messages {

/// Asks again and again for up to 30 microseconds before a thread goes to sleep: to sleep and be woken takes longer than an answer, or
/// the next text of a lively conversation, when the other end has a processor of its own. After each failure the poller
/// skips more calls, up to 127.
class SpinPoller {
public:
    /// The calling thread's.
    static SpinPoller& Own();

    /// Calls `isReady` until it is true; false when the call was skipped or the limit has passed. Its few microseconds run
    /// by the machine's own clock, whichever is in force.
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

/// Handles messages for the calling thread's windows until the descriptor is ready, or `end` has come; without a
/// descriptor (-1) until one message has been handled. Without an `end` there is no limit.
WokenBy WaitFor(int descriptor, short events, std::optional<std::chrono::steady_clock::time_point> end);

}  // namespace qv::platform::messages
