#pragma once

/// @file The paths of selections: those that are simple enough to be walked, and the others as XPath.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv::dom {

/// "name", "name[2]", "*", "*[0]" or, at the end of a path only, "@name".
struct PathStep {
    std::string_view name;  ///< "*" for any element
    int index = -1;         ///< from 0; -1 for every one
    bool attribute = false;
};

struct SimplePath {
    bool absolute = false;
    std::vector<PathStep> steps;  ///< none: the document itself, when absolute
};

/// The steps of a path, which has to outlive them; nothing when it is not a simple one.
std::optional<SimplePath> ReadSimplePath(std::string_view path);

/// The path in XPath 1.0: indexes from 1, names compared as they are written. Nothing when it is too long (64 KiB) or too
/// deep (64 levels of brackets) for an evaluator to be trusted with it, or its brackets and quotes do not match.
std::optional<std::string> ToXPath(std::string_view path);

}  // namespace qv::dom
