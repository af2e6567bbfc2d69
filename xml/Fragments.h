#pragma once

#include <vector>

#include "qvcommon/XmlDom.h"

namespace qv {

/// Replaces an element's content with nodes. Old elements that recur in the new content keep their node identity: first
/// those with identical markup, then those with the same name and "typ". O(n).
/// @throws _com_error E_INVALIDARG for nodes that are not allowed there; nothing is changed then.
void ReplaceContent(const MSXML2::IXMLDOMElement& element, std::vector<MSXML2::IXMLDOMNode> fresh);

}  // namespace qv
