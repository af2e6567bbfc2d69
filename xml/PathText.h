#pragma once

/// @file Paths as texts.

#include <string_view>
#include <vector>

namespace qv {

/// The steps between the "/", those inside brackets and quotes left alone. Empty ones are kept: "//a" has two in front.
std::vector<std::string_view> StepsOf(std::string_view path);

/// True for a step that an index can follow: a name or "*" without a predicate.
bool TakesIndex(std::string_view step);

struct IndexedStep {
    std::string_view name;
    long long index = 0;
    bool valid = true;  ///< false: what stands in brackets is no index
};

/// "item[3]" or "item".
IndexedStep ReadIndexedStep(std::string_view step);

}  // namespace qv
