#include "platform/windows/names/WidePath.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/Text.h"
#include "platform/windows/System.h"

namespace qv::platform {
namespace {

constexpr std::wstring_view kExtended = L"\\\\?\\", kExtendedServer = L"\\\\?\\UNC\\", kDevices = L"\\\\.\\";
constexpr std::wstring_view kSeparators = L"\\/";

/// Maximum length of folder paths: room for a file name of 12 characters below MAX_PATH.
constexpr std::size_t kLongestPlain = MAX_PATH - 13;
/// The system stores the length of a path in bytes in 16 bits.
constexpr std::size_t kLongest = 32766;

/// Prefix of a name stored as code units: no name contains a separator.
constexpr char kUnits = '\\';

bool IsAscii(std::wstring_view text) {
    return std::ranges::all_of(text, [](wchar_t c) { return c < 0x80; });
}

std::wstring Wide(std::string_view text) {
    if (std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
        return {text.begin(), text.end()};
    return ToSystemExactly(text).value_or(std::wstring());
}

std::optional<std::string> Narrow(std::wstring_view text) {
    if (IsAscii(text)) return std::string(text.begin(), text.end());
    std::string narrow = FromSystem(text);
    if (Wide(narrow) != text) return std::nullopt;
    return narrow;
}

bool IsSeparator(wchar_t c) {
    return kSeparators.find(c) != kSeparators.npos;
}

bool IsAbsolute(std::wstring_view path) {
    const bool hasDrive = path.size() > 2 && path[1] == L':' && IsSeparator(path[2]);
    return hasDrive || (path.size() > 1 && IsSeparator(path[0]) && IsSeparator(path[1]));
}

bool IsLiteral(std::wstring_view path) {
    return path.starts_with(kExtended) || path.starts_with(kDevices);
}

std::wstring Extended(const std::wstring& path) {
    if (path.empty() || path.size() > kLongest) return {};
    if (IsLiteral(path)) return path;
    const std::wstring full = WideFullPath(path);
    const bool onServer = full.starts_with(L"\\\\");
    if (full.empty() || IsLiteral(full)) return full;
    std::wstring extended(onServer ? kExtendedServer : kExtended);
    extended += std::wstring_view(full).substr(onServer ? 2 : 0);
    return extended.size() <= kLongest ? extended : std::wstring();
}

/// Whether the plain form is too short for it; relative paths include the current folder.
bool IsTooLong(std::wstring_view path) {
    if (path.size() > kLongestPlain) return true;
    return !path.empty() && !IsAbsolute(path) &&
           path.size() + sys::GetCurrentDirectoryW(0, nullptr).value() > kLongestPlain;
}

std::wstring Plain(std::wstring_view path) {
    if (path.starts_with(kExtendedServer)) return L"\\\\" + std::wstring(path.substr(kExtendedServer.size()));
    return std::wstring(path.substr(path.starts_with(kExtended) ? kExtended.size() : 0));
}

wchar_t Upper(wchar_t c) {
    return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c;
}

/// Accepts one digit, including the superscript ones of Latin-1.
bool IsPortNumber(std::wstring_view text) {
    return text.size() == 1 && std::wstring_view(L"0123456789\u00B9\u00B2\u00B3").find(text[0]) != text.npos;
}

/// Only the part before the first dot, without trailing blanks, matters.
bool IsDevice(std::wstring_view name) {
    constexpr std::array<std::wstring_view, 7> kNames = {L"CON",    L"PRN",    L"AUX",    L"NUL",
                                                         L"CLOCK$", L"CONIN$", L"CONOUT$"};
    std::wstring base(name.substr(0, name.find(L'.')));
    while (!base.empty() && base.back() == L' ') base.pop_back();
    std::ranges::transform(base, base.begin(), &Upper);
    if (std::ranges::find(kNames, base) != kNames.end()) return true;
    return (base.starts_with(L"COM") || base.starts_with(L"LPT")) && IsPortNumber(std::wstring_view(base).substr(3));
}

}  // namespace

std::wstring ToSystem(std::string_view text) {
    const std::u16string wide = ToWide(text);
    return {wide.begin(), wide.end()};
}

std::string FromSystem(std::wstring_view text) {
    return FromWide({reinterpret_cast<const char16_t*>(text.data()), text.size()});
}

std::wstring WidePath(std::string_view path) {
    std::wstring wide = Wide(path);
    return IsTooLong(wide) ? Extended(wide) : wide;
}

std::wstring ExtendedPath(std::string_view path) {
    return Extended(Wide(path));
}

std::wstring WidePattern(std::string_view pattern) {
    std::wstring wide = Wide(pattern);
    if (!IsTooLong(wide)) return wide;
    const std::size_t start = wide.find_last_of(kSeparators) + 1;
    std::wstring folder = Extended(start ? wide.substr(0, start) : L".\\");
    if (folder.empty()) return folder;
    if (folder.back() != L'\\') folder += L'\\';
    return folder + wide.substr(start);
}

std::wstring WideFullPath(const std::wstring& path) {
    if (path.size() > kLongest) return {};
    std::wstring full(MAX_PATH, L'\0');
    for (;;) {
        const auto size = static_cast<DWORD>(full.size());
        const auto length = sys::GetFullPathNameW(path.c_str(), size, full.data(), nullptr);
        if (!length.ok()) return {};
        full.resize(length.value());
        if (length.value() < size) return Plain(full);
    }
}

std::optional<std::string> NarrowPath(std::wstring_view path) {
    return Narrow(Plain(path));
}

std::optional<std::string> ReachablePath(const std::wstring& path) {
    if (std::optional<std::string> text = NarrowPath(path)) return text;
    std::wstring shorter(kLongest + 1, L'\0');
    const auto length =
        sys::GetShortPathNameW(Extended(path).c_str(), shorter.data(), static_cast<DWORD>(shorter.size()));
    if (!length.ok() || length.value() >= shorter.size()) return std::nullopt;
    shorter.resize(length.value());
    return NarrowPath(shorter);
}

std::string ShownPath(std::wstring_view path) {
    return FromSystem(Plain(path));
}

bool IsPlainWideName(std::wstring_view name) {
    if (name.empty() || name.back() == L'.' || name.back() == L' ') return false;
    const auto isRefused = [](wchar_t c) {
        return c < 32 || std::wstring_view(L"<>:\"/\\|?*").find(c) != std::wstring_view::npos;
    };
    return std::ranges::none_of(name, isRefused) && !IsDevice(name);
}

std::optional<std::string> ReachableName(std::wstring_view name) {
    return IsPlainWideName(name) ? Narrow(name) : std::nullopt;
}

std::string EntryName(std::wstring_view name) {
    if (std::optional<std::string> text = Narrow(name)) return *std::move(text);
    std::string units(1 + name.size() * sizeof(wchar_t), kUnits);
    std::memcpy(units.data() + 1, name.data(), units.size() - 1);
    return units;
}

std::wstring WideName(std::string_view name) {
    if (!name.starts_with(kUnits)) return Wide(name);
    std::wstring wide((name.size() - 1) / sizeof(wchar_t), L'\0');
    std::memcpy(wide.data(), name.data() + 1, wide.size() * sizeof(wchar_t));
    return wide;
}

std::string ShownEntryName(std::string name) {
    return name.starts_with(kUnits) ? ShownPath(WideName(name)) : name;
}

}  // namespace qv::platform
