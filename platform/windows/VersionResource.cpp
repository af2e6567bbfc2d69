#include "platform/VersionResource.h"

#include <windows.h>

namespace qv::platform {

VersionResource::VersionResource(const std::string& file) {
    const DWORD size = ::GetFileVersionInfoSizeA(file.c_str(), nullptr);
    m_block.resize(size);
    if (size && !::GetFileVersionInfoA(file.c_str(), 0, size, m_block.data())) m_block.clear();
}

std::string VersionResource::Value(const std::string& path) const {
    void* value = nullptr;
    UINT size = 0;
    if (m_block.empty() || !::VerQueryValueA(m_block.data(), path.c_str(), &value, &size) || !value) return {};
    return {static_cast<const char*>(value), size};
}

}  // namespace qv::platform
