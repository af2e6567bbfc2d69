#include "platform/Profile.h"

#include <algorithm>

#include "platform/Hex.h"
#include "platform/Registry.h"
#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

RegistryKey KeyOf(const ProfilePlace& place) {
    return {RegistryRoot::User, "Software\\" + place.company + '\\' + place.application};
}

RegistryKey KeyOf(const ProfilePlace& place, const char* section) {
    return {RegistryRoot::User, KeyOf(place).path + '\\' + section};
}

std::optional<std::string> ReadFromRegistry(const ProfilePlace& place, const char* section, const char* entry) {
    RegistryValue value;
    if (!ReadRegistryValue(KeyOf(place, section), entry, value).ok()) return std::nullopt;
    switch (value.type) {
        case RegistryType::Text:
        case RegistryType::Integer: return value.data;
        case RegistryType::Bytes: return HexText(value.data);
        case RegistryType::Texts: break;
    }
    return std::nullopt;
}

/// A section that contains others is not deleted: "a", if "a\\b" exists.
bool DeleteKey(const ProfilePlace& place, const char* section) {
    const std::wstring path = ToSystem(KeyOf(place, section).path);
    const Status deleted = sys::RegDeleteKeyW(HKEY_CURRENT_USER, path.c_str()).status();
    return deleted.ok() || deleted.error() == ERROR_FILE_NOT_FOUND;
}

std::vector<std::string> ListRegistry(const ProfilePlace& place, const char* section) {
    std::vector<std::string> names;
    ListRegistryValues(KeyOf(place, section), names).IgnoreError();  // the names so far
    std::erase_if(names, [&](const std::string& name) { return !ReadFromRegistry(place, section, name.c_str()); });
    return names;
}

/// Adds the subkeys of a key, prefixed with their path. The system limits the depth.
void AddKeys(const RegistryKey& key, const std::string& prefix, std::vector<std::string>& found) {
    std::vector<std::string> names;
    if (!ListRegistryKeys(key, names).ok()) return;
    for (const std::string& name : names) {
        found.push_back(prefix + name);
        AddKeys({key.root, key.path + '\\' + name}, prefix + name + '\\', found);
    }
}

std::string FileOf(const ProfilePlace& place) {
    return place.application + ".INI";
}

/// Returns the content of a private profile, up to a zero byte, or up to two if names are requested. A result that
/// leaves two bytes unused is complete.
std::string ReadFromFile(const ProfilePlace& place, const char* section, const char* entry, const char* otherwise) {
    const std::string file = FileOf(place);
    for (std::string value(256, '\0');; value.resize(2 * value.size())) {
        const auto size = static_cast<DWORD>(value.size());
        const auto length =
            sys::GetPrivateProfileStringA(file.c_str(), section, entry, otherwise, value.data(), size).value();
        if (length + 2 < size) return value.substr(0, length);
    }
}

/// Two different defaults distinguish a missing value.
std::optional<std::string> ReadFromFile(const ProfilePlace& place, const char* section, const char* entry) {
    const std::string value = ReadFromFile(place, section, entry, "");
    if (value.empty() && !ReadFromFile(place, section, entry, "?").empty()) return std::nullopt;
    return value;
}

/// Reading removes one pair of quotes, and blanks at the ends.
std::string Quoted(std::string_view value) {
    const std::string_view ends = " \t\"'";
    const bool changes =
        !value.empty() && (ends.find(value.front()) != ends.npos || ends.find(value.back()) != ends.npos);
    return changes ? '"' + std::string(value) + '"' : std::string(value);
}

/// A private profile stores one line: the rest of a longer text would be read as entries.
bool WriteToFile(const ProfilePlace& place, const char* section, const char* entry, const char* value) {
    if (value && std::string_view(value).find_first_of("\r\n") != std::string_view::npos) return false;
    const std::string text = Quoted(value ? value : "");
    return sys::WritePrivateProfileStringA(FileOf(place).c_str(), section, entry, value ? text.c_str() : nullptr).ok();
}

std::vector<std::string> ListFile(const ProfilePlace& place, const char* section) {
    const std::string all = ReadFromFile(place, section, nullptr, "");
    std::vector<std::string> names;
    for (std::size_t from = 0; from < all.size(); from += names.back().size() + 1)
        names.emplace_back(all.c_str() + from);
    return names;
}

}  // namespace

std::string ProfileFile(const ProfilePlace&) {
    return {};
}

std::optional<std::string> ReadProfile(const ProfilePlace& place, const char* section, const char* entry) {
    return place.company.empty() ? ReadFromFile(place, section, entry) : ReadFromRegistry(place, section, entry);
}

bool WriteProfile(const ProfilePlace& place, const char* section, const char* entry, const char* value) {
    if (place.company.empty()) return WriteToFile(place, section, entry, value);
    if (!entry) return DeleteKey(place, section);
    const RegistryKey key = KeyOf(place, section);
    return (value ? WriteRegistryValue(key, entry, {RegistryType::Text, value}) : DeleteRegistryValue(key, entry)).ok();
}

std::vector<std::string> ListProfile(const ProfilePlace& place, const char* section) {
    if (place.company.empty()) return ListFile(place, section);
    if (section) return ListRegistry(place, section);
    std::vector<std::string> names;
    AddKeys(KeyOf(place), "", names);
    return names;
}

}  // namespace qv::platform
