#pragma once

#include <string_view>

namespace qv::tool {

/// What a file is, going by its name.
struct FileKind {
    std::string_view extension;      ///< lower case, with its point; empty for the kind of all that is not known
    const char* name;                ///< "PNG picture"
    const char* term;                ///< the part of the name that the explanation is of
    const char* explanation;         ///< for those who don't know the term
    bool isShownByBrowsers = false;  ///< as a picture
};

/// Of links, whatever they are called.
extern const FileKind kLinkToFile, kLinkToFolder, kBrokenLink;

/// By the extension, without regard to case. Valid for ever; one address a kind.
const FileKind& KindOf(std::string_view fileName);

}  // namespace qv::tool
