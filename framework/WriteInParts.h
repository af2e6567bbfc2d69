#pragma once

/// @file Writing more bytes than the count of one CFile::Write holds.

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace qv {

/// Calls `write` with each part of the bytes and its size, in order; not at all for no bytes.
template <class Write>
void WriteInParts(std::string_view bytes, Write write) {
    constexpr std::size_t kLargestPart = 1 << 30;
    while (!bytes.empty()) {
        const std::size_t size = std::min(bytes.size(), kLargestPart);
        write(bytes.data(), static_cast<std::uint32_t>(size));
        bytes.remove_prefix(size);
    }
}

}  // namespace qv
