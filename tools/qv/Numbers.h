#pragma once

#include <charconv>
#include <string_view>

namespace qv::tool {

/// Parses a whole text as a number with a decimal point, regardless of the locale.
template <class Number>
bool ParseNumber(std::string_view text, Number& number) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

}  // namespace qv::tool
