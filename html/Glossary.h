#pragma once

/// @file Where the terms of a glossary stand in a text.

#include <vector>

#include "qvcommon/framework/Collections.h"

namespace qv::html {

/// Bytes `begin` to `end` of the text.
struct GlossaryHit {
    std::size_t begin, end;
    std::size_t term;  ///< its index
};

/// The occurrences of the terms, without regard to case, as whole words. Of two that compete the term with the lower index
/// wins, then the one that comes first: an occurrence is dropped when its start lies in, or just behind, one that was taken
/// before. (One that starts before such a one and reaches into it is taken.) Sorted by their starts, no two of them equal.
std::vector<GlossaryHit> FindTerms(std::string_view text, const CStringArray& terms);

/// Whether bytes `begin` to `end` stand by themselves: no letter or digit on either side, but for a plural "s" or "es"
/// behind them.
bool IsWholeWord(std::string_view text, std::size_t begin, std::size_t end);

}  // namespace qv::html
