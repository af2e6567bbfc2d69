#pragma once

/// @file What the COM DOM does not get to see. It reports nothing on its way, so a text is looked at before.

#include <string_view>

#include "qvcommon/XmlDom.h"

namespace qv::dom {

/// Looks at an XML text in UTF-8 for what the handles' limits exclude: more than kMaxDepth elements in each other,
/// declarations of entities, references to others than the five of XML, more than 100,000 attributes given by
/// declarations, a zero byte, bytes that are no characters. Anything else may be wrong with a text that passes.
/// Linear, without memory.
/// @return code 0 for a text that passes.
MSXML2::IXMLDOMParseError Screen(std::string_view text);

}  // namespace qv::dom
