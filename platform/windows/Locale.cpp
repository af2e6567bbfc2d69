#include "platform/Locale.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include "platform/windows/UniqueHandle.h"

namespace qv::platform {
namespace {

// The system's functions give the length of what they wrote with its zero byte, or 0.
std::string Written(std::string buffer, const Result<int>& length) {
    buffer.resize(length.ok() ? static_cast<std::size_t>(length.value() - 1) : 0);
    return buffer;
}

}  // namespace

std::string CurrencySymbol(std::size_t maximum) {
    HKEY opened = nullptr;
    constexpr const char* kName = "Control Panel\\International";
    if (!sys::RegOpenKeyExA(HKEY_CURRENT_USER, kName, 0, KEY_QUERY_VALUE, &opened).ok()) return {};
    const UniqueKey key(opened);
    std::string text(maximum, '\0');
    DWORD type = 0, size = static_cast<DWORD>(maximum);
    const auto read =
        sys::RegQueryValueExA(key.Get(), "sCurrency", nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &size);
    if (!read.ok() || type != REG_SZ) return {};
    text.resize(::strnlen(text.data(), size));
    return text;
}

std::string FormatCurrency(double amount, std::size_t maximum) {
    if (!std::isfinite(amount)) return {};
    // As %f writes it, but with the point that the system function wants, whatever the C locale.
    char plain[512];
    *std::to_chars(plain, plain + sizeof plain - 1, amount, std::chars_format::fixed, 6).ptr = '\0';
    std::string text(maximum, '\0');
    const auto length =
        sys::GetCurrencyFormatA(LOCALE_USER_DEFAULT, 0, plain, nullptr, text.data(), static_cast<int>(maximum));
    return Written(std::move(text), length);
}

std::string ListSeparator(std::size_t maximum) {
    std::string text(maximum, '\0');
    const auto length = sys::GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SLIST, text.data(), static_cast<int>(maximum));
    return Written(std::move(text), length);
}

}  // namespace qv::platform
