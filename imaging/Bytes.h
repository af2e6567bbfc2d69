#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string>

#include "qvcommon/framework/Types.h"

namespace qv::imaging {

using Bytes = std::span<const BYTE>;

/// Describes what is wrong with a picture file. Thrown by value; never leaves imaging/.
struct PictureError {
    std::string what;
};

/// Reads a number at the start of the bytes, which must be long enough.
template <class Number>
Number LittleEndian(Bytes bytes) {
    Number number;
    std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

inline std::uint32_t BigEndian32(const BYTE* bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

inline void PutBigEndian32(std::uint32_t number, BYTE* out) {
    for (int shift = 24; shift >= 0; shift -= 8) *out++ = static_cast<BYTE>(number >> shift);
}

}  // namespace qv::imaging
