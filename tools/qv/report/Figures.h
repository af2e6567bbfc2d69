#pragma once

#include <cstdint>
#include <ctime>

#include "qvcommon/framework/String.h"

/// Formatting of a report's figures, in UTF-8 regardless of the process's code page.
namespace qv::tool {

/// In groups of three digits.
CString Number(std::uintmax_t value);
/// "1 file", "2 files".
CString Counted(std::uintmax_t count, const char* one);
/// With a suitable unit: "1.5 MB".
CString Size(std::uintmax_t bytes);
/// Eight hexadecimal digits.
CString Checksum(unsigned long checksum);
/// To the minute, in local time.
CString Date(std::int64_t time);

}  // namespace qv::tool
