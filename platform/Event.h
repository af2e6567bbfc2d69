#pragma once

/// @file Events with timeouts that use the steady clock: a change of the system's time does not affect a wait.
///
/// Replaces a condition variable where a wait has a timeout. MinGW's std::condition_variable only uses the system
/// clock: it waits until a time of that clock, and for ever if that is 49 days ahead, or in 32-bit programs after
/// January 2038.

#include <cstdint>
#include <memory>

namespace qv::platform {

/// An auto-reset event, initially not signalled: a signal ends one wait, the current one or the next. Thread-safe.
/// Raises std::bad_alloc if the system has no resources.
class Event {
public:
    Event();
    ~Event();
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    void Set();
    void Reset();
    void Wait();
    /// Returns false on timeout.
    bool WaitFor(std::uint64_t milliseconds);

private:
    struct Body;
    std::unique_ptr<Body> m_body;
};

}  // namespace qv::platform
