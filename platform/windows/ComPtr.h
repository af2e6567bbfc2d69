#pragma once

/// @file The owner of COM references, for this layer and for the parts above it that speak to COM objects.

#include <windows.h>
// windows.h comes first.
#include <unknwn.h>

#include <utility>

namespace qv::platform {

/// One reference to an interface, or none.
template <class Interface>
class ComPtr {
public:
    ComPtr() = default;
    /// Takes over the caller's reference.
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

    /// Where a call puts the reference that it gives out. Only while this object has none.
    Interface** Receive() { return &m_pointer; }
    /// The same for calls that give out an interface by its identifier.
    void** ReceiveAny() { return reinterpret_cast<void**>(&m_pointer); }
    /// Hands the reference over to the caller.
    Interface* Detach() { return std::exchange(m_pointer, nullptr); }

    void Swap(ComPtr& other) noexcept { std::swap(m_pointer, other.m_pointer); }

private:
    Interface* m_pointer = nullptr;
};

/// The same object by another of its interfaces; null when it has none of that kind.
template <class Interface>
ComPtr<Interface> QueryFor(::IUnknown* object, const IID& iid) {
    ComPtr<Interface> other;
    object->QueryInterface(iid, other.ReceiveAny());
    return other;
}

}  // namespace qv::platform
