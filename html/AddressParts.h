#pragma once

/// @file Parsing of an address in an attribute's value, including its character references.

#include <cstddef>
#include <string_view>

namespace qv::html {

/// One character of an attribute's value.
struct ValueCharacter {
    char code = 0;           ///< kOther if not ASCII, or a reference that does not affect an address's form
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

/// Ignores what browsers ignore: spaces and control characters at both ends, tabs and line ends anywhere.
AddressKind Classify(std::string_view value);

/// A value in three parts: white space, address, white space.
struct TrimmedValue {
    std::string_view before, address, after;
};
TrimmedValue Trim(std::string_view value);

/// One segment of a path.
struct Segment {
    enum Kind { Name, Dot, DotDot } kind = Name;
    std::string_view text;      ///< as written in the value
    std::size_t separator = 0;  ///< length of the separator after it; 0 at the end of the path
};
/// Returns the segment at `position`. A path ends at a query, a fragment, or the value's end.
Segment ReadSegment(std::string_view value, std::size_t position);

bool IsSeparator(char c);

}  // namespace qv::html
