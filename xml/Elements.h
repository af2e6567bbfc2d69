#pragma once

/// @file Operations on elements shared by several files.

#include <vector>

#include "qvcommon/XmlDom.h"

namespace qv {

/// Returns the key that selects an element's class: its name and, if it has an attribute "typ", a space and that
/// attribute's markup: `item typ="big"`.
CString KeyOfElement(const MSXML2::IXMLDOMElement& element);

bool IsElement(const MSXML2::IXMLDOMNode& node);

std::vector<MSXML2::IXMLDOMNode> ChildrenOf(const MSXML2::IXMLDOMNode& parent);

}  // namespace qv
