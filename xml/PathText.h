#pragma once

/// @file Parsing of paths.

#include <string_view>
#include <vector>

namespace qv {

/// Splits a path at each "/" outside brackets and quotes. Empty steps are kept: "//a" starts with two.
std::vector<std::string_view> StepsOf(std::string_view path);

/// Whether an index may follow the step: a name or "*" without a predicate.
bool TakesIndex(std::string_view step);

struct IndexedStep {
    std::string_view name;
    long long index = 0;
    bool valid = true;  ///< false if the brackets do not hold an index
};

/// Parses "item[3]" or "item".
IndexedStep ReadIndexedStep(std::string_view step);

}  // namespace qv
