#pragma once

/// @file ASCII characters, independent of the process's code page. Bytes from 0x80 on belong to no class and have no
/// case. platform/Text.h has the functions that depend on the code page or the locale.

#include <algorithm>
#include <string>
#include <string_view>

namespace qv::ascii {

constexpr bool IsAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

constexpr bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return IsAscii(c); });
}

constexpr bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool IsUpper(char c) {
    return c >= 'A' && c <= 'Z';
}

constexpr bool IsLower(char c) {
    return c >= 'a' && c <= 'z';
}

constexpr bool IsLetter(char c) {
    return IsUpper(c) || IsLower(c);
}

constexpr bool IsLetterOrDigit(char c) {
    return IsLetter(c) || IsDigit(c);
}

constexpr bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

/// Blanks, newlines, the vertical tab and the form feed, as C's isspace in the "C" locale.
constexpr bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool IsControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

constexpr char ToLower(char c) {
    return IsUpper(c) ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr char ToUpper(char c) {
    return IsLower(c) ? static_cast<char>(c - ('a' - 'A')) : c;
}

/// Returns a copy with its ASCII letters in lower case.
inline std::string ToLower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) c = ToLower(c);
    return lower;
}

/// Returns whether the texts are equal, ignoring the case of ASCII letters.
constexpr bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return ToLower(x) == ToLower(y); });
}

/// Removes the leading characters of a class, the trailing ones, or both.
template <class Class>
constexpr std::string_view TrimmedLeft(std::string_view text, Class drops) {
    while (!text.empty() && drops(text.front())) text.remove_prefix(1);
    return text;
}

template <class Class>
constexpr std::string_view TrimmedRight(std::string_view text, Class drops) {
    while (!text.empty() && drops(text.back())) text.remove_suffix(1);
    return text;
}

template <class Class>
constexpr std::string_view Trimmed(std::string_view text, Class drops) {
    return TrimmedRight(TrimmedLeft(text, drops), drops);
}

}  // namespace qv::ascii
