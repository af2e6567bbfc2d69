#pragma once

/// @file Local times as stored by old file systems and archives: two 16-bit numbers, steps of two seconds, 1980 to
/// 2107.

#include <cstdint>

namespace qv::platform {

struct DosTime {
    std::uint16_t date = 0;  ///< (year - 1980) << 9 | month << 5 | day
    std::uint16_t time = 0;  ///< hour << 11 | minute << 5 | second / 2

    friend bool operator==(const DosTime&, const DosTime&) = default;
};

/// Converts `seconds` since 1970 UTC to local time, with the zone's offset at that date; times out of range are
/// clamped.
DosTime ToDosTime(std::int64_t seconds);
/// The inverse; -1 for an invalid time.
std::int64_t FromDosTime(const DosTime& time);

}  // namespace qv::platform
