#pragma once

#include <string_view>

namespace qv::tool {

/// The kind of a file, judged by its name.
struct FileKind {
    std::string_view extension;      ///< lower case, with its dot; empty for unknown kinds
    const char* name;                ///< "PNG picture"
    const char* term;                ///< the part of the name that is explained
    const char* explanation;         ///< for readers who do not know the term
    bool isShownByBrowsers = false;  ///< as a picture
};

/// The kinds of links, regardless of their names.
extern const FileKind kLinkToFile, kLinkToFolder, kBrokenLink;

/// Looks up the extension, case-insensitively. The reference is always valid; each kind has one address.
const FileKind& KindOf(std::string_view fileName);

}  // namespace qv::tool
