#pragma once

/// @file The library's error type, its cancellation variant, and the functions that raise them.

#include "qvcommon/framework/String.h"

/// An error: text, severity, code, and whether the code is shown. Thrown by pointer; the catcher frees it with
/// Delete().
class QVCOMMON_API CVorbexException : public CException {
    DECLARE_DYNAMIC(CVorbexException)

public:
    /// Empty text, severity 64, code 0, the code shown.
    CVorbexException() = default;
    /// The code is shown.
    CVorbexException(int code, int severity, CString text)
        : m_text(std::move(text)), m_severity(severity), m_code(code) {}
    ~CVorbexException() override;

    /// Returns the text without the code.
    CString GetText() { return m_text; }
    void SetText(CString text) { m_text = std::move(text); }
    /// Returns the number, whose meaning is defined by the raiser.
    long GetCode() const { return m_code; }
    void SetCode(int code) { m_code = code; }
    /// Message-box icon bits: 16 stop, 48 exclamation, 64 information.
    int GetSeverity() const { return m_severity; }
    void SetSeverity(int severity) { m_severity = severity; }
    /// Non-zero: messages include the code in parentheses.
    int GetReportErrorCode() const { return m_reportErrorCode; }
    void SetReportErrorCode(int report) { m_reportErrorCode = report; }

    /// Writes the text, followed by " (code)" if the code is shown, as strncpy does: at most `maximum` bytes, the rest
    /// filled with zero bytes, and NOT zero-terminated if the message is as long as the buffer or longer. `helpContext`
    /// is ignored. Always returns 1.
    BOOL GetErrorMessage(char* text, UINT maximum, UINT* helpContext = nullptr) override;

    /// Shows the message, at most 512 bytes of it, in a message box with the severity's bits added to `type`; if a
    /// derived class has no message, the framework's text number `fallbackId` (0: number 0xF020).
    /// @return the box's result.
    int ReportError(UINT type = 0, UINT fallbackId = 0) override;

private:
    CString m_text;
    int m_severity = 64;
    LONG m_code = 0;
    int m_reportErrorCode = 1;
};

/// The user cancelled the operation. It has no run-time class record and reports its base's: distinguish it by the type
/// in the catch clause.
class QVCOMMON_API CVorbexCancelException : public CVorbexException {
public:
    CVorbexCancelException() = default;
    ~CVorbexCancelException() override;
    /// Shows nothing and returns 0: a cancellation is not reported to the user.
    int ReportError(UINT type = 0, UINT fallbackId = 0) override;
};

/// An error with more to report than its message; a second base of exceptions. Its exception is the owner, and is freed
/// with Delete(). Not thread-safe.
class QVCOMMON_API IErrorDetails {
public:
    /// Returns the message and what it concerns, such as a file's path and the system's reason, in one line. What is
    /// unknown is left out.
    virtual CString Describe() const = 0;

protected:
    virtual ~IErrorDetails();
};

/// Raises a new CVorbexException* with these values.
[[noreturn]] QVCOMMON_API void ThrowQvException(const CString& text, int severity, int code, int reportErrorCode);

/// Raises a CVorbexException* with the system's message for an error number; empty if the system has none. The number
/// itself is not stored: `code` is chosen by the caller.
[[noreturn]] QVCOMMON_API void ThrowQvErrorException(unsigned long systemError, int severity, int code,
                                                     int reportErrorCode);

/// Does the same for the calling thread's last system error.
[[noreturn]] QVCOMMON_API void ThrowQvLastErrorException(int severity, int code, int reportErrorCode);

/// Raises a new CVorbexCancelException* with the text "User cancelled", severity 48, code 0, not shown.
[[noreturn]] QVCOMMON_API void ThrowQvCancelException();

/// Makes uncaught exceptions readable: from now on, an exception that leaves main or a thread prints "PROGRAM: MESSAGE"
/// to standard error and ends the program with status 1. The message is that of Describe for a CException* with
/// IErrorDetails, of GetErrorMessage for any other, of Description or ErrorMessage for a _com_error, of what() for a
/// std::exception, the text itself for a `const char*`. A CUserException* prints nothing, since the user has already
/// been informed. Anything else that terminates the program, such as destroying a running thread, prints a line that
/// says so and calls std::abort.
///
/// stdout is flushed. As with every call of std::terminate no destructor runs: files that are still open may be
/// incomplete, and temporary ones remain. To survive a failure, use a catch clause.
///
/// Call it once, at the start of main. It replaces the handler of std::set_terminate for the whole process. A Windows
/// program without a console has no standard error: catch in main and use ReportError there.
QVCOMMON_API void QVCOMMON_CALL QvReportUncaught();
