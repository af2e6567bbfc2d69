#pragma once

#include "qvcommon/framework/String.h"

/// A string in two forms: bytes of the process's code page (CodePage.h) and UTF-16. It stores the form that it was
/// created from and converts to the other one on first use, in linear time. Characters that the other form cannot
/// represent become "?".
///
/// A value type. Not thread-safe: even a getter may convert.
class QVCOMMON_API CUnicodeString {
public:
    /// The empty string.
    CUnicodeString() = default;
    /// Each: Constructs from one form. A null pointer gives the empty string.
    CUnicodeString(const char* bytes) : CUnicodeString(CString(bytes)) {}
    CUnicodeString(CString bytes) : m_bytes(std::move(bytes)), m_has(Form::Bytes) {}
    CUnicodeString(const char16_t* wide) : CUnicodeString(wide ? std::u16string_view(wide) : std::u16string_view()) {}
    CUnicodeString(std::u16string_view wide) : m_wide(wide), m_has(Form::Wide) {}

    /// Each: Valid until the object changes or is destroyed, and in the code page at the time of the conversion.
    const CString& GetBytes() const;
    const std::u16string& GetWide() const;
    /// Returns whether the string is empty.
    bool IsEmpty() const { return m_bytes.IsEmpty() && m_wide.empty(); }
    /// Returns whether converting to the other form and back restores the original.
    bool IsExact() const;

    /// Compares the characters.
    friend bool operator==(const CUnicodeString& a, const CUnicodeString& b) { return a.GetWide() == b.GetWide(); }

private:
    enum class Form { Bytes, Wide };

    mutable CString m_bytes;
    mutable std::u16string m_wide;
    Form m_has = Form::Bytes;  // the original form
    mutable bool m_hasBoth = false;

    void MakeOther() const;
};
