#pragma once

#include "qvcommon/XmlDom.h"

namespace qv {

/// What selects the class of an element: its name, and, where it has an attribute "typ", a blank and that attribute's markup:
/// `item typ="big"`.
CString KeyOfElement(const MSXML2::IXMLDOMElement& element);

}  // namespace qv
