#pragma once

#include "qvcommon/Exceptions.h"
#include "qvcommon/XmlDom.h"

/// An error of XML: text and severity as every error of the library has them, the DOM's error code or the caller's number,
/// and a second number of the caller's. Thrown by pointer; who catches one ends it with Delete().
class QVCOMMON_API CXmlException : public CVorbexException {
    DECLARE_DYNAMIC(CXmlException)

public:
    CXmlException() = default;

    /// Raises the error with the parse error's reason and code.
    [[noreturn]] static void Throw(const MSXML2::IXMLDOMParseError& error, int severity, int detail);
    [[noreturn]] static void Throw(const char* message, int severity, int errorCode, int detail);

    /// The DOM's error code, or the number that the caller of Throw gave.
    int GetErrorCode() const { return m_errorCode; }
    /// The second number that the caller of Throw gave.
    int GetDetail() const { return m_detail; }

private:
    int m_errorCode = 0;
    int m_detail = 0;
};
