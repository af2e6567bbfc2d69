#pragma once

/// @file Conversion between the process's code page (qvcommon/CodePage.h) and UTF-8. Thread-safe.

#include <string_view>

#include "qvcommon/framework/String.h"

/// Converts a string from the code page to UTF-8. Bytes that are no character of the code page become "?", unless that
/// is UTF-8: then the string is unchanged.
QVCOMMON_API CString QVCOMMON_CALL QvToUtf8(std::string_view text);
/// Converts a UTF-8 string to the code page. Bytes that are not UTF-8, and characters that the code page lacks, become
/// "?"; no best-fit characters are used.
QVCOMMON_API CString QVCOMMON_CALL QvFromUtf8(std::string_view utf8);
