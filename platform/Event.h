#pragma once

/// @file Events that threads wait on by the steady clock: a change of the system's time neither shortens nor prolongs a
/// wait.
///
/// In place of a condition variable where a wait has a limit. MinGW's std::condition_variable has the system clock
/// alone: it waits until a time of that clock, for ever where the time is 49 days off, or in 32-bit programs after
/// January 2038.

#include <cstdint>
#include <memory>

namespace qv::platform {

/// An auto-reset event, not signalled at first: a signal ends one wait, the present one or the next. Any thread may
/// call any member. Raises std::bad_alloc when the system gives none.
class Event {
public:
    Event();
    ~Event();
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    void Set();
    void Reset();
    void Wait();
    /// False when the time is over.
    bool WaitFor(std::uint64_t milliseconds);

private:
    struct Body;
    std::unique_ptr<Body> m_body;
};

}  // namespace qv::platform
