#pragma once

/// @file What the user's locale says about money and lists. Windows has it in the user's settings, Linux in the current C
/// locale. Texts are in the code page of platform/Text.h.

#include <cstddef>
#include <string>

namespace qv::platform {

/// The currency symbol; empty when there is none, or when it takes more than `maximum` bytes with its zero byte.
std::string CurrencySymbol(std::size_t maximum);

/// The amount with symbol and separators; empty when the system cannot write it, or when it takes more than `maximum`
/// bytes with its zero byte.
std::string FormatCurrency(double amount, std::size_t maximum);

/// What separates the items of a list; empty when the system does not say, or when it takes more than `maximum` bytes with
/// its zero byte.
std::string ListSeparator(std::size_t maximum);

/// Whether the calling thread has a locale of its own, which the threads that it starts do not have.
bool HasOwnLocale();

}  // namespace qv::platform
