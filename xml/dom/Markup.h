#pragma once

#include <string>

#include "qvcommon/XmlDom.h"

namespace qv::dom {

/// The markup of a node and all below it, the same for every DOM. Prefixes that it uses are declared in it.
std::string MarkupOf(const MSXML2::IXMLDOMNode& node);

/// The markup of the nodes below it alone.
std::string InnerMarkupOf(const MSXML2::IXMLDOMNode& node);

}  // namespace qv::dom
