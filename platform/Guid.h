#pragma once

/// @file Identifiers that are unique in the world.

#include <array>
#include <optional>

namespace qv::platform {

/// The 16 bytes in the order in which they are written.
using Guid = std::array<unsigned char, 16>;

/// A new identifier; on Linux 122 random bits of the kernel. None when the system fails.
std::optional<Guid> NewGuid();

}  // namespace qv::platform
