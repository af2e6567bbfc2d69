#pragma once

#include "xml/dom/msxml/Internals.h"

namespace qv::dom {

/// What a SAX reader finds wrong with a text or the bytes of a file; code 0 when it cannot tell.
MSXML2::IXMLDOMParseError FindProblem(const VARIANT& input);

}  // namespace qv::dom
