#pragma once

/// @file Local times as old file systems and archives keep them: two 16-bit numbers, steps of two seconds, 1980 to 2107.

#include <cstdint>

namespace qv::platform {

struct DosTime {
    std::uint16_t date = 0;  ///< (year - 1980) << 9 | month << 5 | day
    std::uint16_t time = 0;  ///< hour << 11 | minute << 5 | second / 2

    friend bool operator==(const DosTime&, const DosTime&) = default;
};

/// The local time at `seconds` since 1970 UTC, by the rules that the zone has at that date; times outside the range become
/// its ends.
DosTime ToDosTime(std::int64_t seconds);
/// The way back; -1 for numbers that name no time.
std::int64_t FromDosTime(const DosTime& time);

}  // namespace qv::platform
