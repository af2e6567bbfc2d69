#pragma once

#include <libxml/xmlerror.h>

#include "xml/dom/libxml2/Internals.h"

namespace qv::dom {

/// In the code page, without a line end.
MSXML2::IXMLDOMParseError ProblemOf(const xmlError& error);

/// Keeps libxml2 from writing to standard error what no parser is asked about, on this thread, for as long as it lives.
class Silence {
public:
    Silence();
    ~Silence();
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    xmlStructuredErrorFunc m_before;
    void* m_context;
};

}  // namespace qv::dom
