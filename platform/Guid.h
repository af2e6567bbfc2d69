#pragma once

/// @file Globally unique identifiers.

#include <array>
#include <optional>

namespace qv::platform {

/// The 16 bytes in textual order.
using Guid = std::array<unsigned char, 16>;

/// Returns a new identifier; on Linux 122 random bits from the kernel. nullopt if the system fails.
std::optional<Guid> NewGuid();

}  // namespace qv::platform
