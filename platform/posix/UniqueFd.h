#pragma once

#include <utility>

#include "platform/posix/System.h"

namespace qv::platform {

/// The owner of a descriptor, or of none.
class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int descriptor) : m_descriptor(descriptor) {}
    /// Owns what a call has opened; nothing if it failed.
    explicit UniqueFd(const Result<int>& opened) : m_descriptor(opened.ok() ? opened.value() : kNone) {}
    UniqueFd(UniqueFd&& other) noexcept : m_descriptor(other.Release()) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        UniqueFd previous(std::exchange(m_descriptor, other.Release()));
        return *this;
    }
    ~UniqueFd() { Drop(); }

    explicit operator bool() const { return m_descriptor != kNone; }
    int Get() const { return m_descriptor; }
    int Release() { return std::exchange(m_descriptor, kNone); }

    /// Closes it, if there is one, and reports what the system could not keep of what was written.
    Status Close() {
        if (m_descriptor == kNone) return {};
        const Result<int> closed = sys::close(Release());
        // An interrupted close has closed: the number may be another thread's file already.
        return closed.error() == EINTR ? Status() : closed.status();
    }

private:
    static constexpr int kNone = -1;

    /// Whoever needs to know whether the data was kept calls Close.
    void Drop() { Close().IgnoreError(); }

    int m_descriptor = kNone;
};

}  // namespace qv::platform
