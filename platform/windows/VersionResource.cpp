#include "platform/VersionResource.h"

#include "platform/Path.h"
#include "platform/windows/System.h"

namespace qv::platform {

VersionResource::VersionResource(const std::string& file) {
    const std::string native = NativePath(file);
    const auto size = sys::GetFileVersionInfoSizeA(native.c_str(), nullptr);
    if (!size.ok()) return;
    m_block.resize(size.value());
    if (!sys::GetFileVersionInfoA(native.c_str(), 0, size.value(), m_block.data()).ok()) m_block.clear();
}

std::string VersionResource::Value(const std::string& path) const {
    void* value = nullptr;
    UINT size = 0;
    if (m_block.empty() || !::VerQueryValueA(m_block.data(), path.c_str(), &value, &size) || !value) return {};
    return {static_cast<const char*>(value), size};
}

}  // namespace qv::platform
