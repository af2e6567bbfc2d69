#include "platform/Registry.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "platform/windows/UniqueHandle.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

constexpr Status kNotHeld{FileCause::InvalidFile, ERROR_NO_UNICODE_TRANSLATION};

HKEY HandleOf(RegistryRoot root) {
    return root == RegistryRoot::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

Status OpenRegistryKey(const RegistryKey& key, REGSAM access, UniqueKey& opened) {
    const auto path = ToSystemExactly(key.path);
    if (!path) return kNotHeld;
    HKEY handle = nullptr;
    const auto call = sys::RegOpenKeyExW(HandleOf(key.root), path->c_str(), DWORD{0}, access, &handle);
    if (call.ok()) opened = UniqueKey(handle);
    return call.status();
}

Status CreateRegistryKey(const RegistryKey& key, UniqueKey& created) {
    const auto path = ToSystemExactly(key.path);
    if (!path) return kNotHeld;
    HKEY handle = nullptr;
    const auto call = sys::RegCreateKeyExW(HandleOf(key.root), path->c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                                           &handle, nullptr);
    if (call.ok()) created = UniqueKey(handle);
    return call.status();
}

bool IsMissing(const Status& status) {
    return status.error() == ERROR_FILE_NOT_FOUND || status.error() == ERROR_PATH_NOT_FOUND;
}

/// Reads the value's bytes as stored. Another process may make it longer meanwhile.
Status ReadRaw(const UniqueKey& key, const std::wstring& name, DWORD& type, std::string& raw) {
    raw.resize(512);
    for (;;) {
        auto size = static_cast<DWORD>(raw.size());
        const auto read =
            sys::RegQueryValueExW(key.Get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(raw.data()), &size);
        if (read.error() != ERROR_MORE_DATA) {
            raw.resize(read.ok() ? size : 0);
            return read.status();
        }
        raw.resize(std::max<std::size_t>(2 * raw.size(), size));
    }
}

std::wstring WideOf(const std::string& raw) {
    std::wstring text(raw.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), raw.data(), text.size() * sizeof(wchar_t));
    return text;
}

/// Other programs may omit the terminating zero of a text, or store data after it.
std::string TextOf(const std::string& raw) {
    const std::wstring text = WideOf(raw);
    return FromSystem(std::wstring_view(text).substr(0, text.find(L'\0')));
}

std::string TextsOf(const std::string& raw) {
    const std::wstring all = WideOf(raw);
    std::string texts;
    for (std::size_t from = 0; from < all.size() && all[from] != L'\0';) {
        const std::size_t end = std::min(all.find(L'\0', from), all.size());
        (texts += FromSystem(std::wstring_view(all).substr(from, end - from))) += '\0';
        from = end + 1;
    }
    return texts;
}

template <class Integer>
RegistryValue IntegerOf(const std::string& raw) {
    Integer value = 0;
    std::memcpy(&value, raw.data(), sizeof value);
    return {RegistryType::Integer, std::to_string(value)};
}

RegistryValue Decoded(DWORD type, const std::string& raw) {
    if (type == REG_SZ || type == REG_EXPAND_SZ) return {RegistryType::Text, TextOf(raw)};
    if (type == REG_MULTI_SZ) return {RegistryType::Texts, TextsOf(raw)};
    if (type == REG_DWORD && raw.size() == sizeof(DWORD)) return IntegerOf<std::uint32_t>(raw);
    if (type == REG_QWORD && raw.size() == sizeof(std::uint64_t)) return IntegerOf<std::uint64_t>(raw);
    return {RegistryType::Bytes, raw};
}

/// A value as the registry stores it.
struct Encoded {
    DWORD type;
    std::string raw;
};

Encoded EncodedAs(DWORD type, const void* data, std::size_t size) {
    return {type, std::string(static_cast<const char*>(data), size)};
}

/// Returns nullopt for a text that the system cannot store unchanged.
std::optional<Encoded> EncodedOf(const RegistryValue& value) {
    if (value.type == RegistryType::Bytes) return Encoded{REG_BINARY, value.data};
    if (value.type == RegistryType::Integer) {
        const auto number = static_cast<DWORD>(std::strtoul(value.data.c_str(), nullptr, 10));
        return EncodedAs(REG_DWORD, &number, sizeof number);
    }
    const auto wide = ToSystemExactly(value.data);
    if (!wide) return std::nullopt;
    return EncodedAs(REG_SZ, wide->c_str(), (wide->size() + 1) * sizeof(wchar_t));
}

/// Lists the names returned by an indexed call until there are no further ones.
template <class Call>
Status ListNames(std::vector<std::string>& names, Call call) {
    constexpr DWORD kLongestName = 16384;
    std::wstring name(kLongestName, L'\0');
    for (DWORD number = 0;; ++number) {
        DWORD length = kLongestName;
        const auto listed = call(number, name.data(), &length);
        if (listed.error() == ERROR_NO_MORE_ITEMS) return {};
        if (!listed.ok()) return listed.status();
        names.push_back(FromSystem(std::wstring_view(name).substr(0, length)));
    }
}

}  // namespace

Status ReadRegistryValue(const RegistryKey& key, const std::string& name, RegistryValue& value) {
    UniqueKey opened;
    if (const Status status = OpenRegistryKey(key, KEY_QUERY_VALUE, opened); !status.ok()) return status;
    const auto wide = ToSystemExactly(name);
    if (!wide) return kNotHeld;
    DWORD type = REG_NONE;
    std::string raw;
    const Status read = ReadRaw(opened, *wide, type, raw);
    if (read.ok()) value = Decoded(type, raw);
    return read;
}

Status WriteRegistryValue(const RegistryKey& key, const std::string& name, const RegistryValue& value) {
    const auto wide = ToSystemExactly(name);
    const auto encoded = EncodedOf(value);
    if (!wide || !encoded) return kNotHeld;
    UniqueKey created;
    if (const Status status = CreateRegistryKey(key, created); !status.ok()) return status;
    return sys::RegSetValueExW(created.Get(), wide->c_str(), DWORD{0}, encoded->type,
                               reinterpret_cast<const BYTE*>(encoded->raw.data()),
                               static_cast<DWORD>(encoded->raw.size()))
        .status();
}

Status DeleteRegistryValue(const RegistryKey& key, const std::string& name) {
    UniqueKey opened;
    Status deleted = OpenRegistryKey(key, KEY_SET_VALUE, opened);
    const auto wide = ToSystemExactly(name);
    if (!wide) return kNotHeld;
    if (opened) deleted = sys::RegDeleteValueW(opened.Get(), wide->c_str()).status();
    return IsMissing(deleted) ? Status() : deleted;
}

Status DeleteRegistryKey(const RegistryKey& key) {
    const auto path = ToSystemExactly(key.path);
    if (!path) return kNotHeld;
    const Status deleted = sys::RegDeleteTreeW(HandleOf(key.root), path->c_str()).status();
    return IsMissing(deleted) ? Status() : deleted;
}

Status ListRegistryValues(const RegistryKey& key, std::vector<std::string>& names) {
    names.clear();
    UniqueKey opened;
    const Status status = OpenRegistryKey(key, KEY_QUERY_VALUE, opened);
    if (!status.ok()) return IsMissing(status) ? Status() : status;
    return ListNames(names, [&](DWORD number, wchar_t* name, DWORD* length) {
        return sys::RegEnumValueW(opened.Get(), number, name, length, nullptr, nullptr, nullptr, nullptr);
    });
}

Status ListRegistryKeys(const RegistryKey& key, std::vector<std::string>& names) {
    names.clear();
    UniqueKey opened;
    const Status status = OpenRegistryKey(key, KEY_ENUMERATE_SUB_KEYS, opened);
    if (!status.ok()) return IsMissing(status) ? Status() : status;
    return ListNames(names, [&](DWORD number, wchar_t* name, DWORD* length) {
        return sys::RegEnumKeyExW(opened.Get(), number, name, length, nullptr, nullptr, nullptr, nullptr);
    });
}

}  // namespace qv::platform
