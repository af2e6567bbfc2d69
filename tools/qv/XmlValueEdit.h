#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "qvcommon/XmlDom.h"

namespace qv::tool {

/// Identifies a value of a document: an element's text or the value of one of its attributes.
struct XmlValuePlace {
    std::vector<std::size_t> element;  ///< for each level, the number of preceding sibling elements on the path
    std::string attribute;             ///< as written; empty for the element's text
};

/// Returns the place of the node that `path` selects; nullopt if that is neither an element nor an attribute.
std::optional<XmlValuePlace> PlaceOfValue(const MSXML2::IXMLDOMDocument& document, const std::string& path);

/// Returns the bytes of `before` with the value that `after`, a text of the same document in the same encoding, has at
/// the place. All other bytes are unchanged, so line ends, references and empty elements keep their form. Returns
/// nullopt if the place holds more than a text, or if the encoding is not a superset of ASCII.
std::optional<std::string> WithValueOf(std::string_view before, std::string_view after, const XmlValuePlace& place);

}  // namespace qv::tool
