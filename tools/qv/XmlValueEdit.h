#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "qvcommon/XmlDom.h"

namespace qv::tool {

/// Which value of a document is meant: an element's text or the value of one of its attributes.
struct XmlValuePlace {
    std::vector<std::size_t> element;  ///< for each level, the number of elements before the one on the way
    std::string attribute;             ///< as it is written; empty for the element's text
};

/// The place of the node that `path` selects; nullopt where that is neither an element nor an attribute.
std::optional<XmlValuePlace> PlaceOfValue(const MSXML2::IXMLDOMDocument& document, const std::string& path);

/// The bytes of `before` with the value that `after` has at the place, a text of the same document in the same encoding. All
/// other bytes stay, so that line ends, references and empty elements keep their form. Returns nullopt where the place holds
/// more than a text, and where the encoding is no superset of ASCII.
std::optional<std::string> WithValueOf(std::string_view before, std::string_view after, const XmlValuePlace& place);

}  // namespace qv::tool
