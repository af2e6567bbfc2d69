#pragma once

/// @file Selection paths: simple ones, which are walked directly, and the others, which are translated to XPath.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv::dom {

/// "name", "name[2]", "*", "*[0]" or, only as the last step, "@name".
struct PathStep {
    std::string_view name;  ///< "*" for any element
    int index = -1;         ///< zero-based; -1 for all
    bool attribute = false;
};

struct SimplePath {
    bool absolute = false;
    std::vector<PathStep> steps;  ///< if empty and absolute: the document itself
};

/// Returns the steps of a path, which must outlive them; nullopt if it is not simple.
std::optional<SimplePath> ReadSimplePath(std::string_view path);

/// Returns the path in XPath 1.0: indexes start at 1, names are compared as written. Returns nullopt if it is too long
/// (64 KiB) or too deep (64 levels of brackets) for an evaluator, or if its brackets or quotes do not match.
std::optional<std::string> ToXPath(std::string_view path);

}  // namespace qv::dom
