#include "platform/Profile.h"

#include <algorithm>
#include <vector>

#include "platform/windows/UniqueHandle.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

std::wstring KeyName(const ProfilePlace& place, const char* section) {
    return ToSystem("Software\\" + place.company + '\\' + place.application + '\\' + section);
}

/// The section's key; none, with the reason in `opened`, when it cannot be had.
UniqueKey OpenKey(const ProfilePlace& place, const char* section, REGSAM access, Status& opened) {
    HKEY key = nullptr;
    opened = sys::RegOpenKeyExW(HKEY_CURRENT_USER, KeyName(place, section).c_str(), 0, access, &key).status();
    return UniqueKey(opened.ok() ? key : nullptr);
}

UniqueKey CreateKey(const ProfilePlace& place, const char* section) {
    HKEY key = nullptr;
    const auto made = sys::RegCreateKeyExW(HKEY_CURRENT_USER, KeyName(place, section).c_str(), 0, nullptr, 0,
                                           KEY_SET_VALUE, nullptr, &key, nullptr);
    return UniqueKey(made.ok() ? key : nullptr);
}

template <class Character>
std::basic_string<Character> UpToZero(const std::vector<Character>& text) {
    return {text.begin(), std::find(text.begin(), text.end(), Character{})};
}

std::optional<std::string> ReadRegistry(const ProfilePlace& place, const char* section, const char* entry) {
    Status opened;
    const UniqueKey key = OpenKey(place, section, KEY_QUERY_VALUE, opened);
    if (!key) return std::nullopt;
    const std::wstring name = ToSystem(entry);
    std::vector<wchar_t> value(256);
    for (;;) {
        auto size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
        DWORD type = REG_NONE;
        const auto read = sys::RegQueryValueExW(key.Get(), name.c_str(), nullptr, &type,
                                                reinterpret_cast<BYTE*>(value.data()), &size);
        if (read.error() == ERROR_MORE_DATA) {
            value.resize(
                std::max<std::size_t>(2 * value.size(), size / sizeof(wchar_t) + 1));  // it may have grown meanwhile
            continue;
        }
        if (!read.ok() || type != REG_SZ) return std::nullopt;
        value.resize(size / sizeof(wchar_t));
        return FromSystem(UpToZero(value));
    }
}

bool WriteRegistry(const ProfilePlace& place, const char* section, const char* entry, const char* value) {
    const UniqueKey key = CreateKey(place, section);
    const std::wstring text = ToSystem(value);
    const auto* const bytes = reinterpret_cast<const BYTE*>(text.c_str());
    const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    return key && sys::RegSetValueExW(key.Get(), ToSystem(entry).c_str(), 0, REG_SZ, bytes, size).ok();
}

bool DeleteFromRegistry(const ProfilePlace& place, const char* section, const char* entry) {
    Status deleted;
    if (const UniqueKey key = OpenKey(place, section, KEY_SET_VALUE, deleted))
        deleted = sys::RegDeleteValueW(key.Get(), ToSystem(entry).c_str()).status();
    return deleted.ok() || deleted.error() == ERROR_FILE_NOT_FOUND;
}

/// A section that holds others is not deleted: "a", where there is "a\\b".
bool DeleteKey(const ProfilePlace& place, const char* section) {
    const Status deleted = sys::RegDeleteKeyW(HKEY_CURRENT_USER, KeyName(place, section).c_str()).status();
    return deleted.ok() || deleted.error() == ERROR_FILE_NOT_FOUND;
}

std::string FileOf(const ProfilePlace& place) {
    return place.application + ".INI";
}

/// Two defaults tell a value from none; the system says only that the buffer was full.
std::optional<std::string> ReadFile(const ProfilePlace& place, const char* section, const char* entry) {
    std::vector<char> value(256);
    const std::string file = FileOf(place);
    const auto read = [&](const char* otherwise) {
        const auto size = static_cast<DWORD>(value.size());
        return sys::GetPrivateProfileStringA(file.c_str(), section, entry, otherwise, value.data(), size);
    };
    auto length = read("");
    while (length.ok() && length.value() + 1 == value.size()) {
        value.resize(2 * value.size());
        length = read("");
    }
    if (!length.ok() || (length.value() == 0 && read("?").value() > 0)) return std::nullopt;
    return UpToZero(value);
}

}  // namespace

bool UseProfileFolder(const char*) {
    return false;
}

std::optional<std::string> ReadProfile(const ProfilePlace& place, const char* section, const char* entry) {
    return place.company.empty() ? ReadFile(place, section, entry) : ReadRegistry(place, section, entry);
}

bool WriteProfile(const ProfilePlace& place, const char* section, const char* entry, const char* value) {
    if (place.company.empty())
        return sys::WritePrivateProfileStringA(FileOf(place).c_str(), section, entry, value).ok();
    if (!entry) return DeleteKey(place, section);
    return value ? WriteRegistry(place, section, entry, value) : DeleteFromRegistry(place, section, entry);
}

}  // namespace qv::platform
