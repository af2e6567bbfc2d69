#pragma once

/// @file The error that failing COM calls raise, by value. It takes the place of the class of that name in the system's
/// comdef.h; one source cannot include both.

#include "qvcommon/framework/String.h"

/// A failed COM call: its code and what there is to say of it. A value.
class QVCOMMON_API _com_error {
public:
    /// The codes that the library itself raises; a platform's DOM adds its own.
    enum Code : HRESULT {
        kPointer = static_cast<HRESULT>(0x80004003),     ///< E_POINTER: a null handle was used
        kFail = static_cast<HRESULT>(0x80004005),        ///< E_FAIL
        kInvalidArg = static_cast<HRESULT>(0x80070057),  ///< E_INVALIDARG
        kOutOfMemory = static_cast<HRESULT>(0x8007000E)  ///< E_OUTOFMEMORY
    };

    /// With these values; the message is the code's own.
    explicit _com_error(HRESULT error, CString description = {});
    _com_error(const _com_error&) = default;
    _com_error& operator=(const _com_error&) = default;
    virtual ~_com_error();

    /// The code.
    HRESULT Error() const { return m_error; }
    /// The code's own text, the same on every system; "Unknown error 0x%08X" for a code without one. Valid as long as the
    /// object.
    const char* ErrorMessage() const { return m_message; }
    /// What the one who raised it had to say; may be empty.
    CString Description() const { return m_description; }

private:
    HRESULT m_error;
    CString m_message, m_description;
};

/// @throws _com_error
[[noreturn]] QVCOMMON_API void _com_raise_error(HRESULT error, const char* description = nullptr);
