#pragma once

#include "qvcommon/Exceptions.h"
#include "qvcommon/XmlDom.h"

/// An XML error: text and severity as in every error of the library, the DOM's error code or the caller's number, and a
/// second number of the caller. Thrown by pointer; the catcher frees it with Delete().
class QVCOMMON_API CXmlException : public CVorbexException {
    DECLARE_DYNAMIC(CXmlException)

public:
    CXmlException() = default;

    /// Raises the error with the parse error's reason and code.
    [[noreturn]] static void Throw(const MSXML2::IXMLDOMParseError& error, int severity, int detail);
    [[noreturn]] static void Throw(const char* message, int severity, int errorCode, int detail);

    /// Returns the DOM's error code, or the number passed to Throw.
    int GetErrorCode() const { return m_errorCode; }
    /// Returns the second number passed to Throw.
    int GetDetail() const { return m_detail; }

private:
    int m_errorCode = 0;
    int m_detail = 0;
};
