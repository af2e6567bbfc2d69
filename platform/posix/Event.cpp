#include "platform/Event.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace qv::platform {

struct Event::Body {
    std::mutex mutex;
    std::condition_variable changed;
    bool signalled = false;
};

Event::Event() : m_body(std::make_unique<Body>()) {}

Event::~Event() = default;

void Event::Set() {
    // While holding the mutex: the waiting thread may destroy the event as soon as it wakes up.
    const std::scoped_lock lock(m_body->mutex);
    m_body->signalled = true;
    m_body->changed.notify_one();
}

void Event::Reset() {
    const std::scoped_lock lock(m_body->mutex);
    m_body->signalled = false;
}

void Event::Wait() {
    std::unique_lock lock(m_body->mutex);
    m_body->changed.wait(lock, [this] { return std::exchange(m_body->signalled, false); });
}

bool Event::WaitFor(std::uint64_t milliseconds) {
    std::unique_lock lock(m_body->mutex);
    return m_body->changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                    [this] { return std::exchange(m_body->signalled, false); });
}

}  // namespace qv::platform
