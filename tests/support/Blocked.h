#pragma once

#include <chrono>
#include <future>
#include <utility>

/// An action on a thread of its own, which the end of the scope waits for.
class Background {
public:
    template <class Action>
    explicit Background(Action action) : m_done(std::async(std::launch::async, std::move(action))) {}

    /// True when it has ended; waits for that as long as it may take.
    bool Ends() { return m_done.wait_for(std::chrono::seconds(60)) == std::future_status::ready; }
    /// True when it has not ended after a while. It cannot be told from a slow one; it is never falsely called blocked once
    /// it has ended.
    bool IsBlocked() { return m_done.wait_for(std::chrono::milliseconds(100)) == std::future_status::timeout; }

private:
    std::future<void> m_done;
};
