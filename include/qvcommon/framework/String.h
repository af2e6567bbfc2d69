#pragma once

/// @file The byte string. Strings are bytes in the process's multibyte code page; lengths and positions are byte counts
/// from 0, and -1 means "not found". Operations that use the length support embedded zero bytes.

#include <compare>
#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>

#include "qvcommon/framework/Format.h"

class CString;

namespace qv {

/// Other string types: any that converts to a view of its bytes, such as std::string and std::string_view. Pointers are
/// excluded, since they may be null.
template <class T>
concept OtherText = std::convertible_to<const T&, std::string_view> && !std::is_pointer_v<std::decay_t<T>> &&
                    !std::same_as<std::remove_cvref_t<T>, CString>;

/// Types that would convert to a character or an offset by accident.
template <class T>
concept NoCharacter = std::is_arithmetic_v<T> && !std::same_as<T, char>;

}  // namespace qv

/// Derived from std::string, and accepted wherever one is, with all of its bytes.
class QVCOMMON_API CString : public std::string {
public:
    /// The empty string.
    CString() = default;
    /// A null pointer gives the empty string.
    CString(const char* text) : std::string(text ? text : "") {}
    /// The first `length` bytes; none if that is negative. May contain zero bytes.
    CString(const char* text, int length) : std::string(text, Count(length)) {}
    /// `count` copies of the byte; none if count is negative.
    explicit CString(char c, int count = 1) : std::string(Count(count), c) {}
    /// Each: With all bytes of the string.
    CString(std::string_view text) : std::string(text) {}
    CString(std::string&& text) noexcept : std::string(std::move(text)) {}
    CString(const std::string& text) : std::string(text) {}
    template <qv::NoCharacter T>
    explicit CString(T, int = 1) = delete;

    /// Returns the number of bytes.
    int GetLength() const { return static_cast<int>(size()); }
    /// Returns whether the string is empty.
    bool IsEmpty() const { return empty(); }
    /// Clears the string.
    void Empty() { clear(); }

    /// Returns the bytes up to the first zero byte as a C string. Valid until the string changes or is destroyed. A
    /// template, to prevent other pointer conversions: to bool, for delete, and for pointer arithmetic.
    template <class T>
    requires(std::same_as<T, const char*> || std::same_as<T, const void*>) operator T() const { return c_str(); }
    /// Returns the whole string. Valid until the string changes or is destroyed.
    operator std::string_view() const { return {data(), size()}; }
    /// Returns the string as a std::string.
    const std::string& AsStd() const { return *this; }
    std::string& AsStd() { return *this; }

    /// Each: @throws CInvalidArgException* for a position outside 0 to GetLength() - 1, as SetAt does. Read-only: use
    /// SetAt to write.
    char GetAt(int position) const;
    void SetAt(int position, char c);
    template <std::integral I>
    char operator[](I position) const {
        return GetAt(static_cast<int>(position));
    }

    /// Each: Replaces the string. A null pointer gives the empty string.
    CString& operator=(const char* text) {
        assign(text ? text : "");
        return *this;
    }
    CString& operator=(std::string_view text) {
        assign(text);
        return *this;
    }
    CString& operator=(const std::string& text) {
        assign(text);
        return *this;
    }
    CString& operator=(std::string&& text) noexcept {
        assign(std::move(text));
        return *this;
    }
    CString& operator=(char c) {
        assign(1, c);
        return *this;
    }
    template <qv::NoCharacter T>
    CString& operator=(T) = delete;
    /// Each: Appends the string. A null pointer adds nothing.
    template <qv::OtherText T>
    CString& operator+=(const T& text) {
        append(std::string_view(text));
        return *this;
    }
    CString& operator+=(const char* text) {
        append(text ? text : "");
        return *this;
    }
    CString& operator+=(const CString& text) {
        append(text.AsStd());
        return *this;
    }
    CString& operator+=(char c) {
        push_back(c);
        return *this;
    }
    template <qv::NoCharacter T>
    CString& operator+=(T) = delete;

    /// Each: Returns a part of the string; positions and counts are clamped to it.
    CString Mid(int first) const { return Mid(first, GetLength()); }
    CString Mid(int first, int count) const;
    CString Left(int count) const { return Mid(0, count); }
    CString Right(int count) const;

    // Finding and replacing never match part of a character: in a double-byte code page a trail byte is not a
    // backslash. O(n) for any input.

    /// Returns the first position of the byte at or after `start`, from 0; -1 if not found, as in all members that
    /// find.
    int Find(char c, int start = 0) const { return Find(std::string_view(&c, 1), start); }
    /// Returns the first position of `text` at or after `start`. The empty string is found at `start`.
    int Find(std::string_view text, int start = 0) const;
    /// Returns the last position of the byte.
    int ReverseFind(char c) const;
    /// Returns the first position of any character of the set.
    int FindOneOf(std::string_view set) const;

    /// Replaces every occurrence, left to right, in one pass, and returns their number. An empty `find` replaces
    /// nothing.
    int Replace(std::string_view find, std::string_view replacement);
    int Replace(char find, char replacement);
    /// Removes every occurrence of the byte and returns their number.
    int Remove(char c);
    /// Each: Returns the new length. A position past the end means the end, a negative one the start.
    int Insert(int position, std::string_view text);
    int Delete(int position, int count = 1);

    /// Each: Uses the case rules of the current locale, whole characters at a time.
    void MakeUpper();
    void MakeLower();

    /// Each: Removes white space as defined by the current locale, but never bytes of multibyte characters.
    void TrimLeft();
    void TrimRight();

    /// Each: Returns < 0, 0, > 0. Compare compares bytes, CompareNoCase the bytes of both lower-case forms, Collate
    /// uses the collation of the current locale.
    int Compare(std::string_view other) const { return View().compare(other); }
    int CompareNoCase(std::string_view other) const;
    int Collate(std::string_view other) const;

    /// Replaces the string by the formatted one (see Format.h). A value may refer to this string itself.
    template <class... A>
    void Format(qv::FormatText<std::type_identity_t<A>...> format, const A&... values) {
        std::string text;
        const qv::FormatArg args[] = {qv::MakeFormatArg(values)..., {.kind = qv::FormatArg::Kind::Integer}};
        qv::AppendFormat(text, format, args, sizeof...(A));
        AsStd() = std::move(text);
    }

    /// Each: Concatenates the strings. A null pointer adds nothing.
    friend CString operator+(const CString& a, const CString& b) { return Joined(a, b); }
    friend CString operator+(const CString& a, const char* b) { return Joined(a, b ? b : ""); }
    friend CString operator+(const char* a, const CString& b) { return Joined(a ? a : "", b); }
    friend CString operator+(const CString& a, char b) { return Joined(a, std::string_view(&b, 1)); }
    friend CString operator+(char a, const CString& b) { return Joined(std::string_view(&a, 1), b); }
    friend CString operator+(CString&& a, const CString& b) { return std::move(a += b); }
    friend CString operator+(CString&& a, const char* b) { return std::move(a += b); }
    friend CString operator+(CString&& a, char b) { return std::move(a += b); }
    template <qv::OtherText T>
    friend CString operator+(const CString& a, T&& b) {
        return Joined(a, b);
    }
    template <qv::OtherText T>
    friend CString operator+(CString&& a, T&& b) {
        return std::move(a += b);
    }
    template <qv::OtherText T>
    friend CString operator+(T&& a, const CString& b) {
        return Joined(a, b);
    }
    template <qv::NoCharacter T>
    friend CString operator+(const CString&, T) = delete;
    template <qv::NoCharacter T>
    friend CString operator+(T, const CString&) = delete;

    /// Each: Compares bytes.
    friend bool operator==(const CString& a, const CString& b) { return a.AsStd() == b.AsStd(); }
    friend bool operator==(const CString& a, const char* b) { return a.AsStd() == (b ? b : ""); }
    template <qv::OtherText T>
    friend bool operator==(const CString& a, const T& b) {
        return a.View() == std::string_view(b);
    }
    friend std::strong_ordering operator<=>(const CString& a, const CString& b) { return a.View() <=> b.View(); }
    friend std::strong_ordering operator<=>(const CString& a, const char* b) {
        return a.View() <=> std::string_view(b ? b : "");
    }
    template <qv::OtherText T>
    friend std::strong_ordering operator<=>(const CString& a, const T& b) {
        return a.View() <=> std::string_view(b);
    }

private:
    static std::size_t Count(int count) { return count > 0 ? static_cast<std::size_t>(count) : 0; }
    static int Position(std::size_t found) { return found == std::string::npos ? -1 : static_cast<int>(found); }
    static CString Joined(std::string_view a, std::string_view b);
    std::string_view View() const { return *this; }
};

template <>
struct std::hash<CString> {
    std::size_t operator()(const CString& text) const noexcept { return std::hash<std::string_view>()(text); }
};
