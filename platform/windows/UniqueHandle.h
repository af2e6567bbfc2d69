#pragma once

#include <type_traits>
#include <utility>

#include "platform/File.h"
#include "platform/windows/System.h"

namespace qv::platform {

/// The owner of a handle of some kind, or of none. Null and INVALID_HANDLE_VALUE both mean none.
template <class Handle, const auto& close>
class UniqueResource {
public:
    UniqueResource() = default;
    explicit UniqueResource(Handle handle) : m_handle(handle == Invalid() ? nullptr : handle) {}
    /// Owns what a call has given out; nothing if it failed.
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

    /// Closes it, if there is one.
    Status Close() { return m_handle ? close(Release()).status() : Status(); }

private:
    static Handle Invalid() { return static_cast<Handle>(INVALID_HANDLE_VALUE); }

    /// Whoever needs to know whether the close succeeded calls Close.
    void Drop() { Close().IgnoreError(); }

    Handle m_handle = nullptr;
};

using UniqueHandle = UniqueResource<HANDLE, sys::CloseHandle>;
using UniqueSearch = UniqueResource<HANDLE, sys::FindClose>;
using UniqueKey = UniqueResource<HKEY, sys::RegCloseKey>;

/// The handles of the contracts and the system's are the same.
inline HANDLE SystemHandle(FileHandle handle) {
    return reinterpret_cast<HANDLE>(handle);
}
inline FileHandle ContractHandle(HANDLE handle) {
    return reinterpret_cast<FileHandle>(handle);
}

}  // namespace qv::platform
