#pragma once

#include <libxml/parser.h>

#include "xml/dom/libxml2/Internals.h"

namespace qv::dom {

/// What a parser, whose `_private` it is, finds wrong: the first error counts, what follows it is often made by it. Ends the
/// parsing.
struct FirstError {
    MSXML2::IXMLDOMParseError problem;

    static void Take(void* data, xmlError* error);
};

}  // namespace qv::dom
