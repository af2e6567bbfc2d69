#include "platform/Event.h"

#include <algorithm>
#include <new>

#include "platform/windows/UniqueHandle.h"

namespace qv::platform {

struct Event::Body {
    UniqueHandle handle;
};

Event::Event() : m_body(std::make_unique<Body>()) {
    m_body->handle = UniqueHandle(::CreateEventA(nullptr, FALSE, FALSE, nullptr));
    if (!m_body->handle) throw std::bad_alloc();
}

Event::~Event() = default;

void Event::Set() {
    ::SetEvent(m_body->handle.Get());
}

void Event::Reset() {
    ::ResetEvent(m_body->handle.Get());
}

void Event::Wait() {
    ::WaitForSingleObject(m_body->handle.Get(), INFINITE);
}

// The system uses 32 bits.
bool Event::WaitFor(std::uint64_t milliseconds) {
    constexpr std::uint64_t longest = INFINITE - 1;
    for (;; milliseconds -= longest) {
        const auto part = static_cast<DWORD>(std::min(milliseconds, longest));
        if (::WaitForSingleObject(m_body->handle.Get(), part) == WAIT_OBJECT_0) return true;
        if (milliseconds <= longest) return false;
    }
}

}  // namespace qv::platform
