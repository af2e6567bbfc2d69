#pragma once

/// @file What XML 1.0 can hold: names, and texts by the place they have. All in UTF-8.

#include <string_view>

#include "qvcommon/XmlDom.h"

namespace qv::dom {

/// Elements in each other, in documents and in trees made by hand.
constexpr int kMaxDepth = 256;

/// The code of what is refused before a DOM, or by this library's limits: the facility of XML, and a number that no DOM uses.
constexpr auto kRefused = static_cast<HRESULT>(0xC00CE000);

/// What a load may take, and what a text of this library can hold; sizes of texts are asked before anything looks at them.
constexpr std::size_t kLongestDocument = 0x7FFFFFFF;
MSXML2::IXMLDOMParseError TooLong();

/// A name with at most one prefix, of the fifth edition's characters, up to kLongestName bytes.
bool IsName(std::string_view name);
constexpr std::size_t kLongestName = 1'000'000;

/// True when a node of the type can have the text: characters of XML, up to kLongestText bytes; comments, instructions and
/// CDATA without what would end them, and without carriage returns, which would come back as line feeds.
bool CanHold(MSXML2::DOMNodeType type, std::string_view text);
constexpr std::size_t kLongestText = 1'000'000'000;

/// The part of a name before its colon; empty when there is none.
constexpr std::string_view PrefixOf(std::string_view name) {
    const std::size_t colon = name.find(':');
    return name.substr(0, colon == name.npos ? 0 : colon);
}
constexpr std::string_view LocalPartOf(std::string_view name) {
    return name.substr(name.find(':') + 1);
}

/// "xmlns" and "xmlns:p" declare namespaces.
constexpr bool IsDeclaration(std::string_view name) {
    return name == "xmlns" || name.starts_with("xmlns:");
}
/// The prefix that such a name declares.
constexpr std::string_view DeclaredPrefix(std::string_view name) {
    return name.substr(name.size() > 5 ? 6 : 5);
}

/// True when a prefix, "" for the default, may be declared to stand for a namespace.
bool CanDeclare(std::string_view prefix, std::string_view uri);

}  // namespace qv::dom
