#pragma once

#include <utility>

#include "platform/posix/System.h"

namespace qv::platform {

/// Owns a descriptor, or none.
class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int descriptor) : m_descriptor(descriptor) {}
    /// Owns the descriptor opened by a call; none if it failed.
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

    /// Closes it, if any, and reports what could not be stored.
    Status Close() {
        if (m_descriptor == kNone) return {};
        const Result<int> closed = sys::close(Release());
        // An interrupted close has closed: the number may already belong to another thread's file.
        return closed.error() == EINTR ? Status() : closed.status();
    }

private:
    static constexpr int kNone = -1;

    /// Callers that must know whether the data was stored call Close.
    void Drop() { Close().IgnoreError(); }

    int m_descriptor = kNone;
};

}  // namespace qv::platform
