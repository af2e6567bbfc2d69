#pragma once

#include <string>

#include "platform/windows/System.h"

namespace qv::platform {

/// The attributes that prevent a file from being overwritten by a new one that lacks them.
inline constexpr DWORD kHiddenOrSystem = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

/// Clears the read-only attribute of a file, or the given ones, if set, so that the file can be changed, replaced or
/// deleted. Restores them at the end of the scope, unless Dismiss was called.
class WritableScope {
public:
    explicit WritableScope(const std::wstring& path) : WritableScope(path, AttributesOf(path)) {}
    /// For a file whose attributes are known.
    WritableScope(std::wstring path, DWORD attributes, DWORD cleared = FILE_ATTRIBUTE_READONLY)
        : m_path(std::move(path)) {
        if (!(attributes & cleared)) return;
        const DWORD writable = attributes & ~cleared;
        // If an attribute cannot be cleared, the operation in the scope reports the failure.
        if (sys::SetFileAttributesW(m_path.c_str(), writable).ok()) m_attributes = attributes;
    }
    ~WritableScope() {
        // The operation has already failed, and the caller reports that.
        if (m_attributes != 0) sys::SetFileAttributesW(m_path.c_str(), m_attributes).IgnoreError();
    }
    WritableScope(const WritableScope&) = delete;
    WritableScope& operator=(const WritableScope&) = delete;

    /// The file is gone, or has other attributes.
    void Dismiss() { m_attributes = 0; }

private:
    /// Returns 0 for a missing file.
    static DWORD AttributesOf(const std::wstring& path) {
        const auto attributes = sys::GetFileAttributesW(path.c_str());
        return attributes.ok() ? attributes.value() : 0;
    }

    std::wstring m_path;
    DWORD m_attributes = 0;  // to be restored; 0: none
};

}  // namespace qv::platform
