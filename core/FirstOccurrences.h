#pragma once

/// @file Finding equal items in linear time.

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace qv {

/// Returns for each item the index of the first item equal to it; its own index for the first ones. The hash has a
/// random key per process, so that an attacker cannot prepare slow input. At most 2^32 - 2 items; views must remain
/// valid during the call.
std::vector<std::uint32_t> FirstOccurrences(std::span<const std::string_view> items);
std::vector<std::uint32_t> FirstOccurrences(std::span<const std::uint64_t> items);

/// Does the same if only the first `known` items count as occurrences; kUnknown for each later one that equals none of
/// them.
inline constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
std::vector<std::uint32_t> FirstOccurrences(std::span<const std::string_view> items, std::size_t known);

}  // namespace qv
