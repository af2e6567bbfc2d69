#pragma once

/// @file The order of texts under the collation of the current locale.

#include <cstdint>
#include <span>
#include <vector>

#include "qvcommon/framework/String.h"

namespace qv {

/// Returns the permutation that sorts the texts: for each new position the old index. Stable, even if descending. At
/// most 2^32 - 1 texts.
std::vector<std::uint32_t> CollationOrder(std::span<const CString* const> strings, bool descending);

}  // namespace qv
