#pragma once

#include <libxml/parser.h>

#include "xml/dom/libxml2/Internals.h"

namespace qv::dom {

/// What a parser, whose `_private` it is, finds wrong: the first error counts, what follows it is often made by it.
/// Ends the parsing.
struct FirstError {
    MSXML2::IXMLDOMParseError problem;

    static void Take(void* data, xmlError* error);
};

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
