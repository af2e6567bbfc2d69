#include "platform/VersionResource.h"

#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {

VersionResource::VersionResource(const std::string& file) {
    const std::wstring path = WidePath(file);
    const auto size = sys::GetFileVersionInfoSizeW(path.c_str(), nullptr);
    if (!size.ok()) return;
    m_block.resize(size.value());
    if (!sys::GetFileVersionInfoW(path.c_str(), 0, size.value(), m_block.data()).ok()) m_block.clear();
}

std::string VersionResource::Value(const std::string& path) const {
    void* value = nullptr;
    UINT size = 0;
    if (m_block.empty() || !::VerQueryValueW(m_block.data(), ToSystem(path).c_str(), &value, &size) || !value)
        return {};
    // Only the strings among the values are texts; their size counts characters.
    if (path.starts_with("\\StringFileInfo")) return FromSystem({static_cast<const wchar_t*>(value), size});
    return {static_cast<const char*>(value), size};
}

}  // namespace qv::platform
