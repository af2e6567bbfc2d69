#pragma once

#include <vector>

#include "qvcommon/XmlDom.h"

namespace qv {

/// Puts nodes in the place of an element's content. Elements of the old content that the new one repeats stay the nodes
/// that they were: first those that are the same to the letter, then those with the same name and "typ". Linear.
/// @throws _com_error E_INVALIDARG for nodes that cannot stand there; nothing is changed then.
void ReplaceContent(const MSXML2::IXMLDOMElement& element, std::vector<MSXML2::IXMLDOMNode> fresh);

}  // namespace qv
