#pragma once

#include "qvcommon/XmlDom.h"

namespace qv {

/// Gives an element the attributes and the content of another. Old children that recur in the new content keep their
/// node identity, as in CXmlHelper::SetXml. O(n).
/// @throws _com_error E_INVALIDARG if an attribute's prefix has another namespace at the target, or elements would nest
/// too deeply; nothing is changed then.
void MakeEqual(const MSXML2::IXMLDOMElement& target, const MSXML2::IXMLDOMElement& source);

}  // namespace qv
