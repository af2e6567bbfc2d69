#pragma once

/// @file What no DOM gets to see: documents and texts beyond what the handles promise.

#include <string_view>

#include "qvcommon/XmlDom.h"

namespace qv::dom {

constexpr int kMaxDepth = 256;

/// Looks at an XML text, without parsing it, for what would make a DOM run out of stack, or expand or fetch entities: more
/// than kMaxDepth elements in each other, an internal document type subset, a zero byte, bytes that are no characters.
/// Anything else may be wrong with a text that passes. Linear, without memory.
/// @return code 0 for a text that passes.
MSXML2::IXMLDOMParseError Screen(std::string_view text);
/// The same for the bytes of a file in whatever encoding, as far as it keeps ASCII characters.
MSXML2::IXMLDOMParseError ScreenBytes(std::string_view bytes);

/// Letters, digits and "-._:" and bytes from 0x80 on, not starting with one of "-." or a digit; at most one prefix.
bool IsName(std::string_view name);
/// True when the text holds neither control characters (but tab, CR, LF) nor bytes that are no characters.
bool CanBeHeld(std::string_view text);

}  // namespace qv::dom
