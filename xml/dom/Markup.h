#pragma once

#include <string>

#include "qvcommon/XmlDom.h"

namespace qv::dom {

/// Who reads a markup: another DOM, which takes every character, or a text in the code page, for which the characters that
/// the page does not hold are references in texts and values.
enum class Markup { Exact, CodePage };

/// The markup of a node and all below it, in UTF-8, the same for every DOM. Prefixes that it uses are declared in it.
std::string MarkupOf(const MSXML2::IXMLDOMNode& node, Markup reader = Markup::Exact);

/// The markup of the nodes below it alone.
std::string InnerMarkupOf(const MSXML2::IXMLDOMNode& node, Markup reader = Markup::Exact);

}  // namespace qv::dom
