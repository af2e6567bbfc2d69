#pragma once

/// @file Between the process's code page (qvcommon/CodePage.h) and UTF-8. Any thread may call these functions.

#include <string_view>

#include "qvcommon/framework/String.h"

/// A text of the code page in UTF-8. What is no character of the code page becomes "?", but where that is UTF-8: then the
/// text stays as it is.
QVCOMMON_API CString QVCOMMON_CALL QvToUtf8(std::string_view text);
/// A UTF-8 text in the code page. What is not UTF-8, and what the code page lacks, becomes "?"; nothing is replaced by
/// characters that merely look alike.
QVCOMMON_API CString QVCOMMON_CALL QvFromUtf8(std::string_view utf8);
