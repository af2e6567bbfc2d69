#include "qvcommon/XmlException.h"

IMPLEMENT_DYNAMIC(CXmlException, CVorbexException)

void CXmlException::Throw(const MSXML2::IXMLDOMParseError& error, int severity, int detail) {
    Throw(error.get_reason(), severity, error.get_errorCode(), detail);
}

void CXmlException::Throw(const char* message, int severity, int errorCode, int detail) {
    auto* const exception = new CXmlException;
    exception->SetText(message);
    exception->SetSeverity(severity);
    exception->m_errorCode = errorCode;
    exception->m_detail = detail;
    throw exception;
}
