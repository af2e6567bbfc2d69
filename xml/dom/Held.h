#pragma once

/// @file What XML 1.0 can represent: names, and texts by node type. All in UTF-8.

#include <string_view>

#include "qvcommon/XmlDom.h"

namespace qv::dom {

/// The maximum nesting depth of elements, in documents and in trees built by hand.
constexpr int kMaxDepth = 256;

/// The error code for what is refused before a DOM sees it, or by this library's limits: the facility of XML, and a
/// number that no DOM uses.
constexpr auto kRefused = static_cast<HRESULT>(0xC00CE000);

/// Attributes that declarations of a document type give by default: a short document can give long ones often.
struct Defaults {
    long long number = 0, bytes = 0;  ///< of their values

    Defaults& operator+=(const Defaults& other) {
        number += other.number;
        bytes += other.bytes;
        return *this;
    }
    bool AreTooMany() const { return number > 100'000 || bytes > 10'000'000; }
};

/// Whether an attribute that a document type gives by default can be written in a tag, as it is when the document is
/// saved.
bool CanDefault(std::string_view name, std::string_view value);
constexpr const char* kBadDefault = "An attribute that is given by default is not valid in a tag";

/// The maximum size of a document and of a text of this library; checked before a text is read.
constexpr std::size_t kLongestDocument = 0x7FFFFFFF;
MSXML2::IXMLDOMParseError TooLong();

/// Whether this is a valid name of XML's fifth edition with at most one prefix, of at most kLongestName bytes.
bool IsName(std::string_view name);
constexpr std::size_t kLongestName = 1'000'000;

/// Whether a node of the type can have the text: XML characters, at most kLongestText bytes; comments, instructions and
/// CDATA must not contain their terminator or carriage returns, which would be read back as line feeds.
bool CanHold(MSXML2::DOMNodeType type, std::string_view text);
constexpr std::size_t kLongestText = 1'000'000'000;

/// Returns the part of a name before its colon; empty if it has no colon.
constexpr std::string_view PrefixOf(std::string_view name) {
    const std::size_t colon = name.find(':');
    return name.substr(0, colon == name.npos ? 0 : colon);
}
constexpr std::string_view LocalPartOf(std::string_view name) {
    return name.substr(name.find(':') + 1);
}

/// Whether the name declares a namespace: "xmlns" or "xmlns:p".
constexpr bool IsDeclaration(std::string_view name) {
    return name == "xmlns" || name.starts_with("xmlns:");
}
/// Returns the prefix that such a name declares.
constexpr std::string_view DeclaredPrefix(std::string_view name) {
    return name.substr(name.size() > 5 ? 6 : 5);
}

/// Whether a prefix, "" for the default, may be declared for a namespace.
bool CanDeclare(std::string_view prefix, std::string_view uri);

}  // namespace qv::dom
