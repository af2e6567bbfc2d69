#include "platform/Locale.h"

#include <windows.h>

#include <charconv>
#include <cmath>
#include <cstring>

namespace qv::platform {
namespace {

// The system's functions give the length of what they wrote with its zero byte, or 0.
std::string Written(std::string buffer, int length) {
    buffer.resize(length > 0 ? static_cast<std::size_t>(length - 1) : 0);
    return buffer;
}

}  // namespace

std::string CurrencySymbol(std::size_t maximum) {
    HKEY key = nullptr;
    if (::RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\International", 0, KEY_QUERY_VALUE, &key)) return {};
    std::string text(maximum, '\0');
    DWORD type = 0, size = static_cast<DWORD>(maximum);
    const LSTATUS status =
        ::RegQueryValueExA(key, "sCurrency", nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &size);
    ::RegCloseKey(key);
    if (status || type != REG_SZ) return {};
    text.resize(::strnlen(text.data(), size));
    return text;
}

std::string FormatCurrency(double amount, std::size_t maximum) {
    if (!std::isfinite(amount)) return {};
    // As %f writes it, but with the point that the system function wants, whatever the C locale.
    char plain[512];
    *std::to_chars(plain, plain + sizeof plain - 1, amount, std::chars_format::fixed, 6).ptr = '\0';
    std::string text(maximum, '\0');
    const int length =
        ::GetCurrencyFormatA(LOCALE_USER_DEFAULT, 0, plain, nullptr, text.data(), static_cast<int>(maximum));
    return Written(std::move(text), length);
}

std::string ListSeparator(std::size_t maximum) {
    std::string text(maximum, '\0');
    const int length = ::GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SLIST, text.data(), static_cast<int>(maximum));
    return Written(std::move(text), length);
}

}  // namespace qv::platform
