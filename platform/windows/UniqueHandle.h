#pragma once

#include <type_traits>
#include <utility>

#include "platform/File.h"
#include "platform/windows/System.h"

namespace qv::platform {

/// Owns a handle of some kind, or none. Null and INVALID_HANDLE_VALUE both mean none.
template <class Handle, const auto& close>
class UniqueResource {
public:
    UniqueResource() = default;
    explicit UniqueResource(Handle handle) : m_handle(handle == Invalid() ? nullptr : handle) {}
    /// Owns the handle returned by a call; none if it failed.
    explicit UniqueResource(const Result<Handle>& made) : UniqueResource(made.ok() ? made.value() : nullptr) {}
    UniqueResource(UniqueResource&& other) noexcept : m_handle(other.Release()) {}
    UniqueResource& operator=(UniqueResource&& other) noexcept {
        if (this != &other) Drop();
        m_handle = other.Release();
        return *this;
    }
    ~UniqueResource() { Drop(); }

    explicit operator bool() const { return m_handle != nullptr; }
    Handle Get() const { return m_handle; }
    Handle Release() { return std::exchange(m_handle, nullptr); }

    /// Closes it, if any.
    Status Close() { return m_handle ? close(Release()).status() : Status(); }

private:
    static Handle Invalid() { return static_cast<Handle>(INVALID_HANDLE_VALUE); }

    /// Callers that must know whether the close succeeded call Close.
    void Drop() { Close().IgnoreError(); }

    Handle m_handle = nullptr;
};

using UniqueHandle = UniqueResource<HANDLE, sys::CloseHandle>;
using UniqueSearch = UniqueResource<HANDLE, sys::FindClose>;
using UniqueKey = UniqueResource<HKEY, sys::RegCloseKey>;

/// Converts a handle of the contracts, which has the same value as the system's.
inline HANDLE SystemHandle(FileHandle handle) {
    return reinterpret_cast<HANDLE>(handle);
}
inline FileHandle ContractHandle(HANDLE handle) {
    return reinterpret_cast<FileHandle>(handle);
}

}  // namespace qv::platform
