#pragma once

/// @file The byte string. Texts are bytes in the process's multibyte code page; lengths and positions are byte counts from
/// 0, and -1 means "not found". Embedded zero bytes survive every operation that goes by length.

#include <compare>
#include <concepts>
#include <string>
#include <string_view>

#include "qvcommon/framework/Format.h"

class QVCOMMON_API CString {
public:
    CString() = default;
    /// A null pointer gives the empty text.
    CString(const char* text) : m_text(text ? text : "") {}
    CString(const char* text, int length) : m_text(text, Count(length)) {}
    /// `count` times the byte; none when count is negative.
    explicit CString(char c, int count = 1) : m_text(Count(count), c) {}
    CString(std::string_view text) : m_text(text) {}
    CString(std::string&& text) noexcept : m_text(std::move(text)) {}
    CString(const std::string& text) : m_text(text) {}

    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }

    /// The text up to its first zero byte as C reads it. Valid until the string changes or ends.
    operator const char*() const { return m_text.c_str(); }
    /// The whole text. Valid until the string changes or ends.
    operator std::string_view() const { return m_text; }
    /// The text as the standard library's string, for code that speaks that.
    const std::string& AsStd() const { return m_text; }
    std::string& AsStd() { return m_text; }

    /// @throws CInvalidArgException* for a position outside 0 to GetLength() - 1, as SetAt does.
    char GetAt(int position) const;
    void SetAt(int position, char c);
    template <std::integral I>
    char operator[](I position) const {
        return GetAt(static_cast<int>(position));
    }

    CString& operator=(const char* text) {
        m_text = text ? text : "";
        return *this;
    }
    CString& operator=(std::string_view text) {
        m_text = text;
        return *this;
    }
    CString& operator=(char c) {
        m_text = c;
        return *this;
    }
    CString& operator+=(std::string_view text) {
        m_text += text;
        return *this;
    }
    CString& operator+=(const char* text) {
        m_text += text ? text : "";
        return *this;
    }
    CString& operator+=(const CString& text) {
        m_text += text.m_text;
        return *this;
    }
    CString& operator+=(char c) {
        m_text += c;
        return *this;
    }

    /// Parts of the text; positions and counts outside it are cut to it.
    CString Mid(int first) const { return Mid(first, GetLength()); }
    CString Mid(int first, int count) const;
    CString Left(int count) const { return Mid(0, count); }
    CString Right(int count) const;

    int Find(char c, int start = 0) const { return Find(std::string_view(&c, 1), start); }
    /// The first place of `text` at or after `start`. The empty text is found at `start`.
    int Find(std::string_view text, int start = 0) const;
    int ReverseFind(char c) const { return Position(m_text.rfind(c)); }
    /// The first place of any byte of the set.
    int FindOneOf(std::string_view set) const { return Position(m_text.find_first_of(set)); }

    /// Replaces every occurrence, left to right, in one pass over the text, and returns how many there were. An empty
    /// `find` replaces nothing.
    int Replace(std::string_view find, std::string_view replacement);
    int Replace(char find, char replacement);
    /// Removes every occurrence of the byte and returns how many there were.
    int Remove(char c);
    /// Both return the new length. A position past the end means the end, a negative one the start.
    int Insert(int position, std::string_view text);
    int Delete(int position, int count = 1);

    /// By the case rules of the current locale, whole characters at a time.
    void MakeUpper();
    void MakeLower();

    /// White space is what the current locale calls so, bytes of multibyte characters excepted.
    void TrimLeft();
    void TrimRight();

    /// < 0, 0, > 0. Compare goes by bytes, CompareNoCase by the bytes of both texts in lower case, Collate by the
    /// collation of the current locale.
    int Compare(std::string_view other) const { return m_text.compare(other); }
    int CompareNoCase(std::string_view other) const;
    int Collate(std::string_view other) const;

    /// Replaces the text by the formatted one (see Format.h). A value may refer to this very string.
    template <class... A>
    void Format(qv::FormatText<std::type_identity_t<A>...> format, const A&... values) {
        std::string text;
        const qv::FormatArg args[] = {qv::MakeFormatArg(values)..., {.kind = qv::FormatArg::Kind::Integer}};
        qv::AppendFormat(text, format, args, sizeof...(A));
        m_text = std::move(text);
    }

    friend CString operator+(const CString& a, const CString& b) { return Joined(a.m_text, b.m_text); }
    friend CString operator+(const CString& a, std::string_view b) { return Joined(a.m_text, b); }
    friend CString operator+(std::string_view a, const CString& b) { return Joined(a, b.m_text); }
    friend CString operator+(const CString& a, const char* b) { return Joined(a.m_text, b ? b : ""); }
    friend CString operator+(const char* a, const CString& b) { return Joined(a ? a : "", b.m_text); }
    friend CString operator+(const CString& a, char b) { return Joined(a.m_text, std::string_view(&b, 1)); }
    friend CString operator+(char a, const CString& b) { return Joined(std::string_view(&a, 1), b.m_text); }
    friend CString operator+(CString&& a, const CString& b) { return std::move(a += b); }
    friend CString operator+(CString&& a, std::string_view b) { return std::move(a += b); }
    friend CString operator+(CString&& a, const char* b) { return std::move(a += b); }
    friend CString operator+(CString&& a, char b) { return std::move(a += b); }

    friend bool operator==(const CString& a, const CString& b) { return a.m_text == b.m_text; }
    friend bool operator==(const CString& a, std::string_view b) { return a.m_text == b; }
    friend bool operator==(const CString& a, const char* b) { return a.m_text == (b ? b : ""); }
    friend std::strong_ordering operator<=>(const CString& a, const CString& b) { return a.m_text <=> b.m_text; }
    friend std::strong_ordering operator<=>(const CString& a, std::string_view b) { return std::string_view(a) <=> b; }
    friend std::strong_ordering operator<=>(const CString& a, const char* b) {
        return std::string_view(a) <=> std::string_view(b ? b : "");
    }
    // Named, not left to be derived: std::less<> would find no operator, only the pointers that a string converts to.
    friend bool operator<(const CString& a, const CString& b) { return a.m_text < b.m_text; }
    friend bool operator<(const CString& a, std::string_view b) { return a.m_text < b; }
    friend bool operator<(std::string_view a, const CString& b) { return a < b.m_text; }

private:
    static std::size_t Count(int count) { return count > 0 ? static_cast<std::size_t>(count) : 0; }
    static int Position(std::size_t found) { return found == std::string::npos ? -1 : static_cast<int>(found); }
    static CString Joined(std::string_view a, std::string_view b);

    std::string m_text;
};

template <>
struct std::hash<CString> {
    std::size_t operator()(const CString& text) const noexcept { return std::hash<std::string_view>()(text); }
};
