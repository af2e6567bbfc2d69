#pragma once

/// @file The order of texts under the collation of the current locale.

#include <cstdint>
#include <span>
#include <vector>

#include "qvcommon/framework/String.h"

namespace qv {

/// For each place after sorting the index before it; texts that collate as equal keep their order, descending too. At most
/// 2^32 - 1 texts.
std::vector<std::uint32_t> CollationOrder(std::span<const CString* const> strings, bool descending);

}  // namespace qv
