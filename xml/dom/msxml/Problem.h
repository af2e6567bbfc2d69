#pragma once

#include "xml/dom/msxml/Internals.h"

namespace qv::dom {

/// Returns the error that a SAX reader finds in a text or the bytes of a file; code 0 if it reports none.
MSXML2::IXMLDOMParseError FindProblem(const VARIANT& input);

}  // namespace qv::dom
