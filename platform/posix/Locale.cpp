#include "platform/Locale.h"

#include <langinfo.h>
#include <locale.h>
#include <monetary.h>

#include <cmath>
#include <cstring>

#include "platform/posix/text/TextRules.h"

namespace qv::platform {
namespace {

std::string Limited(const char* text, std::size_t maximum) {
    std::string own = FromLocale(text);
    return own.size() < maximum ? own : "";
}

}  // namespace

std::string CurrencySymbol(std::size_t maximum) {
    const char* const placed = ::nl_langinfo(CRNCYSTR);  // the first byte is the position of the symbol
    return *placed ? Limited(placed + 1, maximum) : "";
}

std::string FormatCurrency(double amount, std::size_t maximum) {
    if (!std::isfinite(amount)) return {};
    std::string text(maximum, '\0');
    const ssize_t length = ::strfmon(text.data(), text.size(), "%n", amount);
    text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return Limited(text.c_str(), maximum);
}

std::string ListSeparator(std::size_t maximum) {
    return Limited(std::strcmp(::nl_langinfo(RADIXCHAR), ",") ? "," : ";", maximum);
}

bool HasOwnLocale() {
    return ::uselocale(nullptr) != LC_GLOBAL_LOCALE;
}

}  // namespace qv::platform
