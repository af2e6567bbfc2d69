#include "platform/Locale.h"

#include <locale.h>

#include <charconv>
#include <cmath>
#include <string_view>

#include "platform/Text.h"
#include "platform/windows/UniqueHandle.h"

namespace qv::platform {
namespace {

wchar_t* Wide(std::u16string& text) {
    return reinterpret_cast<wchar_t*>(text.data());
}

// Converts up to a zero character; empty if the text does not fit with its zero byte.
std::string Fitting(const std::u16string& wide, std::size_t maximum) {
    std::string text = FromWide(std::u16string_view(wide).substr(0, wide.find(u'\0')));
    return text.size() < maximum ? text : std::string();
}

// A byte takes at most one 16-bit unit, so text that needs more room does not fit.
std::u16string Room(std::size_t maximum) {
    return std::u16string(maximum, u'\0');
}

}  // namespace

std::string CurrencySymbol(std::size_t maximum) {
    HKEY opened = nullptr;
    constexpr const wchar_t* kName = L"Control Panel\\International";
    if (!sys::RegOpenKeyExW(HKEY_CURRENT_USER, kName, 0, KEY_QUERY_VALUE, &opened).ok()) return {};
    const UniqueKey key(opened);
    std::u16string text = Room(maximum);
    DWORD type = 0, size = static_cast<DWORD>(text.size() * sizeof(char16_t));
    const auto read =
        sys::RegQueryValueExW(key.Get(), L"sCurrency", nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &size);
    return read.ok() && type == REG_SZ ? Fitting(text, maximum) : std::string();
}

std::string FormatCurrency(double amount, std::size_t maximum) {
    if (!std::isfinite(amount)) return {};
    // Formatted as by %f, but with the decimal point that the system function requires, regardless of the C locale.
    char plain[512];
    char* const end = std::to_chars(plain, plain + sizeof plain, amount, std::chars_format::fixed, 6).ptr;
    const std::wstring number(plain, end);
    std::u16string text = Room(maximum);
    const auto length =
        sys::GetCurrencyFormatW(LOCALE_USER_DEFAULT, 0, number.c_str(), nullptr, Wide(text), static_cast<int>(maximum));
    return length.ok() ? Fitting(text, maximum) : std::string();
}

std::string ListSeparator(std::size_t maximum) {
    std::u16string text = Room(maximum);
    const auto length = sys::GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SLIST, Wide(text), static_cast<int>(maximum));
    return length.ok() ? Fitting(text, maximum) : std::string();
}

bool HasOwnLocale() {
    return ::_configthreadlocale(0) == _ENABLE_PER_THREAD_LOCALE;
}

}  // namespace qv::platform
