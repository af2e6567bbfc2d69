#pragma once

/// @file Decoding of a fixed set of marks.

#include <span>
#include <string>
#include <string_view>

namespace qv::html {

struct Entity {
    std::string_view mark;  ///< starts with & or <, and contains neither of them after that
    std::string_view text;
};

/// Replaces the marks in one pass. Marks do not overlap, and replacements are not examined again: the result equals
/// successive replacements with "&amp;" last.
std::string DecodeEntities(std::string_view text, std::span<const Entity> entities);

}  // namespace qv::html
