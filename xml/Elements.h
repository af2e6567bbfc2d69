#pragma once

/// @file What is done with elements in more than one place.

#include <vector>

#include "qvcommon/XmlDom.h"

namespace qv {

/// What selects the class of an element: its name, and, where it has an attribute "typ", a blank and that attribute's
/// markup: `item typ="big"`.
CString KeyOfElement(const MSXML2::IXMLDOMElement& element);

bool IsElement(const MSXML2::IXMLDOMNode& node);

std::vector<MSXML2::IXMLDOMNode> ChildrenOf(const MSXML2::IXMLDOMNode& parent);

}  // namespace qv
