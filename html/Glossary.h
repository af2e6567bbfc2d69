#pragma once

/// @file Finding the terms of a glossary in a text.

#include <vector>

#include "qvcommon/framework/Collections.h"

namespace qv::html {

/// Bytes `begin` to `end` of the text.
struct GlossaryHit {
    std::size_t begin, end;
    std::size_t term;  ///< its index
};

/// Finds the terms as whole words, case-insensitively. If two occurrences compete, the term with the lower index wins,
/// then the earlier one: an occurrence is dropped if its start is inside, or directly after, one that was accepted
/// before. (One that starts before such a one and overlaps it is accepted.) Sorted by start; no two are equal.
std::vector<GlossaryHit> FindTerms(std::string_view text, const CStringArray& terms);

/// Whether bytes `begin` to `end` are a whole word: no letter or digit on either side, except for a plural "s" or "es"
/// after them.
bool IsWholeWord(std::string_view text, std::size_t begin, std::size_t end);

}  // namespace qv::html
