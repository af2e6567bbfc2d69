#pragma once

#include <string>

#include "qvcommon/XmlDom.h"

namespace qv::dom {

/// The consumer of the markup: another DOM, which accepts every character, or a text in the code page, in which
/// characters that the page lacks are written as references in texts and values.
enum class Markup { Exact, CodePage };

/// Returns the markup of a node and its descendants in UTF-8, the same for every DOM. Every prefix used is declared in
/// it.
std::string MarkupOf(const MSXML2::IXMLDOMNode& node, Markup reader = Markup::Exact);

/// Returns the markup of the node's children only.
std::string InnerMarkupOf(const MSXML2::IXMLDOMNode& node, Markup reader = Markup::Exact);

}  // namespace qv::dom
