#pragma once

/// @file The base of all exceptions. Exceptions are heap objects thrown by pointer; the handler that keeps one from going
/// on ends its life with Delete(). When memory runs out, the language's own std::bad_alloc is raised.

#include "qvcommon/framework/Object.h"

/// An error. Derived classes say what happened.
class QVCOMMON_API CException : public CObject {
    DECLARE_DYNAMIC(CException)

public:
    /// @param autoDelete  zero for an object that is not on the heap, or that someone else owns: Delete leaves it alone.
    explicit CException(BOOL autoDelete = 1) : m_autoDelete(autoDelete) {}

    /// Ends the object's life. Call once, by the handler; the object is gone afterwards.
    void Delete();

    /// Writes the message into `text`, at most `maximum` bytes.
    /// @return non-zero when there is a message. The base has none: it writes an empty text and returns 0.
    virtual BOOL GetErrorMessage(char* text, UINT maximum, UINT* helpContext = nullptr);

    /// Shows the message in a message box of the given type. Without a message it shows the framework's text number
    /// `fallbackId`, or, when that is 0, the one that says that no message is available (0xF020).
    /// @return the box's answer.
    virtual int ReportError(UINT type = 0, UINT fallbackId = 0);

private:
    BOOL m_autoDelete;
};

/// An argument outside what the operation accepts: an index past the end, a format that does not fit its values.
class QVCOMMON_API CInvalidArgException : public CException {
    DECLARE_DYNAMIC(CInvalidArgException)

public:
    BOOL GetErrorMessage(char* text, UINT maximum, UINT* helpContext = nullptr) override;
};

/// Raises a new CInvalidArgException*.
[[noreturn]] QVCOMMON_API void AfxThrowInvalidArgException();

/// The user stopped the work, or was told what is wrong: there is nothing more to say, and no message.
class QVCOMMON_API CUserException : public CException {
    DECLARE_DYNAMIC(CUserException)
};

/// Raises a new CUserException*.
[[noreturn]] QVCOMMON_API void AfxThrowUserException();
