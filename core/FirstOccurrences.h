#pragma once

/// @file Finding equal items in time that grows with their number, not its square.

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace qv {

/// For each item the index of the first item equal to it; its own for the first ones. The hash is keyed afresh in each
/// process, so nobody can prepare items that slow it down. At most 2^32 - 2 items; views have to stay valid during the
/// call.
std::vector<std::uint32_t> FirstOccurrences(std::span<const std::string_view> items);
std::vector<std::uint32_t> FirstOccurrences(std::span<const std::uint64_t> items);

/// The same where only the first `known` items count as occurrences; kUnknown for each later one that equals none of them.
inline constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
std::vector<std::uint32_t> FirstOccurrences(std::span<const std::string_view> items, std::size_t known);

}  // namespace qv
