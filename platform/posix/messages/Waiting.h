#pragma once

/// @file Waiting for a descriptor while the calling thread's windows go on taking messages.

#include <poll.h>

#include <chrono>
#include <optional>
#include <vector>

namespace qv::platform::messages {

/// Polls for up to 30 microseconds before a thread goes to sleep: to sleep and be woken takes longer than an answer, or
/// the next text of a lively conversation, when the other end has a processor of its own. After each failure the poller
/// skips more calls, up to 127.
class SpinPoller {
public:
    /// The calling thread's.
    static SpinPoller& Own();

    /// The number of ready descriptors; 0 when the call was skipped or none became ready within the limit, -1 after a
    /// failure. Its few microseconds run by the machine's own clock, whichever is in force.
    int Poll(std::vector<pollfd>& polled, std::chrono::nanoseconds limit);

private:
    int m_skipsAfterFailure = 0, m_skipsLeft = 0;
};

enum class WokenBy { Message, Descriptor, Timeout };

/// Handles messages for the calling thread's windows until the descriptor is ready, or `end` has come; without a
/// descriptor (-1) until one message has been handled. Without an `end` there is no limit.
WokenBy WaitFor(int descriptor, short events, std::optional<std::chrono::steady_clock::time_point> end);

}  // namespace qv::platform::messages
