#include "platform/Profile.h"

#include <windows.h>

#include <algorithm>
#include <vector>

namespace qv::platform {
namespace {

/// A key that is closed at the end of its scope; null when it could not be had.
class Key {
public:
    Key(const ProfilePlace& place, const char* section, bool create) {
        const std::string path = "Software\\" + place.company + '\\' + place.application + '\\' + section;
        const LSTATUS status = create ? ::RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE,
                                                          nullptr, &m_key, nullptr)
                                      : ::RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_QUERY_VALUE, &m_key);
        if (status != ERROR_SUCCESS) m_key = nullptr;
    }
    ~Key() {
        if (m_key) ::RegCloseKey(m_key);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    HKEY Get() const { return m_key; }

private:
    HKEY m_key = nullptr;
};

std::string UpToZero(const std::vector<char>& bytes) {
    return {bytes.begin(), std::find(bytes.begin(), bytes.end(), '\0')};
}

std::optional<std::string> ReadRegistry(const Key& key, const char* entry) {
    std::vector<char> value(256);
    for (;;) {
        auto size = static_cast<DWORD>(value.size());
        DWORD type = REG_NONE;
        const LSTATUS status =
            ::RegQueryValueExA(key.Get(), entry, nullptr, &type, reinterpret_cast<BYTE*>(value.data()), &size);
        if (status == ERROR_MORE_DATA) {
            value.resize(2 * value.size() > size ? 2 * value.size() : size);  // it may have grown meanwhile
            continue;
        }
        if (status != ERROR_SUCCESS || type != REG_SZ) return std::nullopt;
        value.resize(size);
        return UpToZero(value);
    }
}

std::string FileOf(const ProfilePlace& place) {
    return place.application + ".INI";
}

// Two defaults tell a value from none; the system says only that the buffer was full.
std::optional<std::string> ReadFile(const ProfilePlace& place, const char* section, const char* entry) {
    std::vector<char> value(256);
    const auto read = [&](const char* otherwise) {
        return ::GetPrivateProfileStringA(section, entry, otherwise, value.data(), static_cast<DWORD>(value.size()),
                                          FileOf(place).c_str());
    };
    while (read("") + 1 == value.size()) value.resize(2 * value.size());
    if (value[0] == '\0' && read("?") > 0) return std::nullopt;
    return UpToZero(value);
}

}  // namespace

bool UseProfileFolder(const char*) {
    return false;
}

std::optional<std::string> ReadProfile(const ProfilePlace& place, const char* section, const char* entry) {
    if (place.company.empty()) return ReadFile(place, section, entry);
    const Key key(place, section, false);
    return key.Get() ? ReadRegistry(key, entry) : std::nullopt;
}

bool WriteProfile(const ProfilePlace& place, const char* section, const char* entry, const char* value) {
    if (place.company.empty()) return ::WritePrivateProfileStringA(section, entry, value, FileOf(place).c_str()) != 0;
    const Key key(place, section, true);
    const auto* const bytes = reinterpret_cast<const BYTE*>(value);
    const auto size = static_cast<DWORD>(std::char_traits<char>::length(value) + 1);
    return key.Get() && ::RegSetValueExA(key.Get(), entry, 0, REG_SZ, bytes, size) == ERROR_SUCCESS;
}

}  // namespace qv::platform
