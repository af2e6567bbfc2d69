#pragma once

#include <libxml/xmlerror.h>

#include "xml/dom/libxml2/Internals.h"

namespace qv::dom {

/// The message is in the code page, without a line end.
MSXML2::IXMLDOMParseError ProblemOf(const xmlError& error);

/// While it lives, keeps libxml2 on this thread from writing to standard error the errors that no parser collects.
class ErrorSuppressor {
public:
    ErrorSuppressor();
    ~ErrorSuppressor();
    ErrorSuppressor(const ErrorSuppressor&) = delete;
    ErrorSuppressor& operator=(const ErrorSuppressor&) = delete;

private:
    xmlStructuredErrorFunc m_before;
    void* m_context;
};

}  // namespace qv::dom
