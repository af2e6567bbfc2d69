#pragma once

/// @file Turning a few fixed marks back into what they stand for.

#include <span>
#include <string>
#include <string_view>

namespace qv::html {

struct Entity {
    std::string_view mark;  ///< starts with & or <, and holds neither of them after that
    std::string_view text;
};

/// Replaces the marks in one pass. No two of them can overlap, and what one turns into is not looked at again: the result
/// is that of replacing them one after the other, "&amp;" last.
std::string DecodeEntities(std::string_view text, std::span<const Entity> entities);

}  // namespace qv::html
