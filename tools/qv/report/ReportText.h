#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

#include "qvcommon/framework/String.h"

/// Texts of a report, in UTF-8 whatever the process's code page is. Bytes that are no part of a character stay; browsers
/// show them as U+FFFD.
namespace qv::tool {

/// For text between tags, as CHtmlWriter::Clean has it.
CString EscapedText(std::string_view text);
/// For values of attributes in double quotes, as CHtmlWriter::CleanFloatOver has it.
CString EscapedValue(std::string_view text);
/// For script strings in single quotes, within a page or not: everything that means something there, or to the page around
/// it, becomes an escape.
CString ScriptText(std::string_view text);
/// A relative address from a path with "/" between its names: everything but letters, digits and "-._~/" becomes %XX.
std::string EncodeAddress(std::string_view path);

/// In groups of three digits.
CString Number(std::uintmax_t value);
/// "1 file", "2 files".
CString Counted(std::uintmax_t count, const char* one);
/// In the unit that suits it: "1.5 MB".
CString Size(std::uintmax_t bytes);
/// Eight hexadecimal digits.
CString Checksum(unsigned long checksum);
/// To the minute, in local time.
CString Date(std::time_t time);

}  // namespace qv::tool
