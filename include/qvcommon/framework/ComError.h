#pragma once

/// @file The error raised by failing COM calls, by value. It replaces the class of that name in the system's comdef.h;
/// one source file cannot include both.

#include "qvcommon/framework/String.h"

/// A failed COM call: its code and description. A value type.
class QVCOMMON_API _com_error {
public:
    /// The codes raised by the library itself; a platform's DOM adds its own.
    enum Code : HRESULT {
        kPointer = static_cast<HRESULT>(0x80004003),     ///< E_POINTER: a null handle was used
        kFail = static_cast<HRESULT>(0x80004005),        ///< E_FAIL
        kInvalidArg = static_cast<HRESULT>(0x80070057),  ///< E_INVALIDARG
        kOutOfMemory = static_cast<HRESULT>(0x8007000E)  ///< E_OUTOFMEMORY
    };

    /// With these values; the message is derived from the code.
    explicit _com_error(HRESULT error, CString description = {});
    _com_error(const _com_error&) = default;
    _com_error& operator=(const _com_error&) = default;
    virtual ~_com_error();

    /// Returns the code.
    HRESULT Error() const { return m_error; }
    /// Returns the text of the code, the same on every system; "Unknown error 0x%08X" for a code without one. Valid for
    /// the lifetime of the object.
    const char* ErrorMessage() const { return m_message; }
    /// Returns the description given by the raiser; may be empty.
    CString Description() const { return m_description; }

private:
    HRESULT m_error;
    CString m_message, m_description;
};

/// @throws _com_error
[[noreturn]] QVCOMMON_API void _com_raise_error(HRESULT error, const char* description = nullptr);
