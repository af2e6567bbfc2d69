#pragma once

/// @file Reading an address as it stands in an attribute's value, with its character references.

#include <cstddef>
#include <string_view>

namespace qv::html {

/// One character of an attribute's value.
struct ValueCharacter {
    char code = 0;  ///< kOther for what is not ASCII or none of the references that an address's form depends on
    std::size_t length = 1;  ///< in the value
    static constexpr char kOther = '\x80';
};
ValueCharacter ReadValueCharacter(std::string_view value, std::size_t position);

enum class AddressKind {
    Empty,
    Fragment,
    Query,
    Path,    ///< relative to a folder
    Rooted,  ///< begins with one separator
    Host,    ///< begins with two
    Scheme   ///< or a drive letter
};

/// What browsers pass over does not count: blanks and control characters at both ends, tabs and line ends anywhere.
AddressKind Classify(std::string_view value);

/// A value in three: blanks, address, blanks.
struct TrimmedValue {
    std::string_view before, address, after;
};
TrimmedValue Trim(std::string_view value);

/// One step of a path.
struct Segment {
    enum Kind { Name, Dot, DotDot } kind = Name;
    std::string_view text;      ///< as it stands in the value
    std::size_t separator = 0;  ///< length of the separator after it; 0 at the end of the path
};
/// The segment that begins at `position`. A path ends at a query, a fragment, or the value's end.
Segment ReadSegment(std::string_view value, std::size_t position);

bool IsSeparator(char c);

}  // namespace qv::html
