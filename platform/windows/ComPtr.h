#pragma once

/// @file The owner of COM references, for this layer and the layers above that use COM objects.

#include <windows.h>
// windows.h must come first.
#include <unknwn.h>

#include <utility>

namespace qv::platform {

/// Owns one reference to an interface, or none.
template <class Interface>
class ComPtr {
public:
    ComPtr() = default;
    /// Takes ownership of the caller's reference.
    explicit ComPtr(Interface* pointer) : m_pointer(pointer) {}
    ComPtr(ComPtr&& other) noexcept : m_pointer(other.Detach()) {}
    ComPtr& operator=(ComPtr&& other) noexcept {
        ComPtr(std::move(other)).Swap(*this);
        return *this;
    }
    ~ComPtr() {
        if (m_pointer) m_pointer->Release();
    }

    Interface* operator->() const { return m_pointer; }
    Interface* Get() const { return m_pointer; }
    explicit operator bool() const { return m_pointer != nullptr; }

    /// Returns the address for a call that returns a reference. Must not be used while this object holds one.
    Interface** Receive() { return &m_pointer; }
    /// Does the same for calls that return an interface by its identifier.
    void** ReceiveAny() { return reinterpret_cast<void**>(&m_pointer); }
    /// Releases ownership of the reference to the caller.
    Interface* Detach() { return std::exchange(m_pointer, nullptr); }

    void Swap(ComPtr& other) noexcept { std::swap(m_pointer, other.m_pointer); }

private:
    Interface* m_pointer = nullptr;
};

/// Returns another interface of the object; null if it does not support it.
template <class Interface>
ComPtr<Interface> QueryFor(::IUnknown* object, const IID& iid) {
    ComPtr<Interface> other;
    object->QueryInterface(iid, other.ReceiveAny());
    return other;
}

}  // namespace qv::platform
