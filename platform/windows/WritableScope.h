#pragma once

#include <string>

#include "platform/windows/System.h"

namespace qv::platform {

/// Takes the read-only attribute from a file, if it has it, so that the system lets it be changed, replaced or deleted.
/// Gives it back at the end of the scope, unless Dismiss was called.
class WritableScope {
public:
    explicit WritableScope(const std::wstring& path) : WritableScope(path, AttributesOf(path)) {}
    /// The same for a file whose attributes are known.
    WritableScope(std::wstring path, DWORD attributes) : m_path(std::move(path)) {
        if (!(attributes & FILE_ATTRIBUTE_READONLY)) return;
        const DWORD writable = attributes & ~DWORD{FILE_ATTRIBUTE_READONLY};
        // Where the attribute cannot be taken away, the operation in the scope reports that it is refused.
        if (sys::SetFileAttributesW(m_path.c_str(), writable).ok()) m_attributes = attributes;
    }
    ~WritableScope() {
        // The operation has failed already, and that is what the caller reports.
        if (m_attributes != 0) sys::SetFileAttributesW(m_path.c_str(), m_attributes).IgnoreError();
    }
    WritableScope(const WritableScope&) = delete;
    WritableScope& operator=(const WritableScope&) = delete;

    /// The file is gone, or has got other attributes.
    void Dismiss() { m_attributes = 0; }

private:
    /// 0 for a file that is missing.
    static DWORD AttributesOf(const std::wstring& path) {
        const auto attributes = sys::GetFileAttributesW(path.c_str());
        return attributes.ok() ? attributes.value() : 0;
    }

    std::wstring m_path;
    DWORD m_attributes = 0;  // to be given back; 0 for none
};

}  // namespace qv::platform
