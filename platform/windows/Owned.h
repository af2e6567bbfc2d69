#pragma once

#include <windows.h>

#include <utility>

namespace qv::platform {

/// A handle that is closed at the end of its scope unless it is released. Null and the invalid handle both mean none.
class Owned {
public:
    explicit Owned(HANDLE handle = nullptr) : m_handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    Owned(Owned&& other) noexcept : m_handle(other.Release()) {}
    Owned& operator=(Owned&& other) noexcept {
        Close();
        m_handle = other.Release();
        return *this;
    }
    ~Owned() { Close(); }

    explicit operator bool() const { return m_handle != nullptr; }
    HANDLE Get() const { return m_handle; }
    HANDLE Release() { return std::exchange(m_handle, nullptr); }
    void Close() {
        if (m_handle) ::CloseHandle(Release());
    }

private:
    HANDLE m_handle;
};

}  // namespace qv::platform
