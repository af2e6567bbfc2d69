#pragma once

/// @file Currency and list separators of the user's locale. Windows takes them from the user's settings, Linux from the
/// current C locale. Texts are in the code page of platform/Text.h.

#include <cstddef>
#include <string>

namespace qv::platform {

/// Returns the currency symbol; empty if there is no symbol, or if it takes more than `maximum` bytes with its zero
/// byte.
std::string CurrencySymbol(std::size_t maximum);

/// Returns the amount with symbol and separators; empty if the system cannot format it, or if it takes more than
/// `maximum` bytes with its zero byte.
std::string FormatCurrency(double amount, std::size_t maximum);

/// Returns the list separator; empty if the system does not define it, or if it takes more than `maximum` bytes with
/// its zero byte.
std::string ListSeparator(std::size_t maximum);

/// Returns whether the calling thread has a thread-specific locale, which threads that it starts do not inherit.
bool HasOwnLocale();

}  // namespace qv::platform
