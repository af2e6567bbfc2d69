#pragma once

#include "qvcommon/framework/String.h"

/// One text in two forms: bytes of the process's code page (CodePage.h) and 16-bit characters (UTF-16). It keeps the form
/// that it was made from and makes the other one when it is first asked for, in linear time. What the other form cannot
/// hold is "?" there.
///
/// A value: copies share nothing. Since a Get member may make a form, one object belongs to one thread.
class QVCOMMON_API CUnicodeString {
public:
    /// The empty text.
    CUnicodeString() = default;
    /// Each: from one form. A null pointer gives the empty text.
    CUnicodeString(const char* bytes) : CUnicodeString(CString(bytes)) {}
    CUnicodeString(CString bytes) : m_bytes(std::move(bytes)), m_has(Form::Bytes) {}
    CUnicodeString(const char16_t* wide) : CUnicodeString(wide ? std::u16string_view(wide) : std::u16string_view()) {}
    CUnicodeString(std::u16string_view wide) : m_wide(wide), m_has(Form::Wide) {}

    /// Each: Valid until the object changes or ends, and in the code page of the time when the form was made.
    const CString& GetBytes() const;
    const std::u16string& GetWide() const;
    /// Whether there is no character.
    bool IsEmpty() const { return m_bytes.IsEmpty() && m_wide.empty(); }
    /// Whether the form that the text was made from comes back from the other one without change.
    bool IsExact() const;

    /// By the characters.
    friend bool operator==(const CUnicodeString& a, const CUnicodeString& b) { return a.GetWide() == b.GetWide(); }

private:
    enum class Form { Bytes, Wide };

    mutable CString m_bytes;
    mutable std::u16string m_wide;
    Form m_has = Form::Bytes;  // what it was made from
    mutable bool m_hasBoth = false;

    void MakeOther() const;
};
