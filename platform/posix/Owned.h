#pragma once

#include <unistd.h>

#include <utility>

namespace qv::platform {

/// A descriptor that is closed at the end of its scope unless it is released.
class Owned {
public:
    explicit Owned(int descriptor = -1) : m_descriptor(descriptor) {}
    Owned(Owned&& other) noexcept : m_descriptor(other.Release()) {}
    Owned& operator=(Owned&& other) noexcept {
        Close();
        m_descriptor = other.Release();
        return *this;
    }
    ~Owned() { Close(); }

    explicit operator bool() const { return m_descriptor != -1; }
    int Get() const { return m_descriptor; }
    int Release() { return std::exchange(m_descriptor, -1); }
    void Close() {
        if (m_descriptor != -1) ::close(Release());
    }

private:
    int m_descriptor;
};

}  // namespace qv::platform
