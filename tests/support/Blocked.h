#pragma once

#include <chrono>
#include <future>
#include <utility>

/// Runs an action on its own thread. The destructor waits for it.
class Background {
public:
    template <class Action>
    explicit Background(Action action) : m_done(std::async(std::launch::async, std::move(action))) {}

    /// Waits for its end. False when it takes longer than any action may take.
    bool Ends() { return m_done.wait_for(std::chrono::seconds(60)) == std::future_status::ready; }
    /// True when it has not ended after a while. A slow one counts as blocked; one that has ended never does.
    bool IsBlocked() { return m_done.wait_for(std::chrono::milliseconds(100)) == std::future_status::timeout; }

private:
    std::future<void> m_done;
};
