#pragma once

/// @file The base of all exceptions. Exceptions are heap objects thrown by pointer; the handler that does not rethrow
/// one frees it with Delete(). Running out of memory raises std::bad_alloc.

#include "qvcommon/framework/Object.h"

/// An error. Derived classes describe what happened.
class QVCOMMON_API CException : public CObject {
    DECLARE_DYNAMIC(CException)

public:
    /// @param autoDelete  zero for an object that is not on the heap, or has another owner: Delete does not free it.
    explicit CException(BOOL autoDelete = 1) : m_autoDelete(autoDelete) {}

    /// Frees the object. Must be called once, by the handler; the object is invalid afterwards.
    void Delete();

    /// Writes the message to `text`, at most `maximum` bytes.
    /// @return non-zero if there is a message. The base has none: it writes an empty string and returns 0.
    virtual BOOL GetErrorMessage(char* text, UINT maximum, UINT* helpContext = nullptr);

    /// Shows the message in a message box of the given type. Without a message it shows the framework's text number
    /// `fallbackId`, or, if that is 0, the one for a missing message (0xF020).
    /// @return the box's result.
    virtual int ReportError(UINT type = 0, UINT fallbackId = 0);

private:
    BOOL m_autoDelete;
};

/// An invalid argument: an index out of range, a format that does not fit its values.
class QVCOMMON_API CInvalidArgException : public CException {
    DECLARE_DYNAMIC(CInvalidArgException)

public:
    BOOL GetErrorMessage(char* text, UINT maximum, UINT* helpContext = nullptr) override;
};

/// Raises a new CInvalidArgException*.
[[noreturn]] QVCOMMON_API void AfxThrowInvalidArgException();

/// The user cancelled the operation, or has already been informed of the error: there is no message.
class QVCOMMON_API CUserException : public CException {
    DECLARE_DYNAMIC(CUserException)
};

/// Raises a new CUserException*.
[[noreturn]] QVCOMMON_API void AfxThrowUserException();
