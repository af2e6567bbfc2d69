#pragma once

/// @file What the COM DOM must not see. It cannot be interrupted while it parses, so a text is checked before.

#include <string_view>

#include "qvcommon/XmlDom.h"

namespace qv::dom {

/// Checks an XML text in UTF-8 for what the handles' limits exclude: more than kMaxDepth nested elements, entity
/// declarations, references other than XML's five, too many attributes from declarations, zero bytes, invalid
/// characters. A text that passes may have other errors. O(n).
/// @return code 0 if the text passes.
MSXML2::IXMLDOMParseError Screen(std::string_view text);

}  // namespace qv::dom
