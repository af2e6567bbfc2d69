#pragma once

/// @file The code page of the process's strings, and how to select another one.
///
/// On Windows it is the system's ANSI code page. On Linux it is the character set of the C locale selected by
/// setlocale; without one, that of the locale named by the environment when the first string is processed; and UTF-8 if
/// that is "C", "POSIX", unknown to the system, or not set. A program that never calls setlocale thus uses its user's
/// encoding, and UTF-8 in services and containers.
///
/// In the plain C locale, case mapping follows Unicode, and strings are collated by their bytes.

#if __has_include(<mbctype.h>)
#include <mbctype.h>  // the C runtime has the function itself
#else
#include "qvcommon/Export.h"

/// Arguments of _setmbcp that are not code pages.
inline constexpr int _MB_CP_SBCS = 0, _MB_CP_OEM = -2, _MB_CP_ANSI = -3, _MB_CP_LOCALE = -4;

/// Selects the code page of all strings of the process, regardless of the locale: 1252, 932, 28591, 65001 and any other
/// that the system's iconv supports and that contains ASCII. `_MB_CP_SBCS` is 1252, the other three restore the
/// default. Existing strings keep their bytes. May be called from any thread while no other thread is processing
/// strings.
/// @return 0; -1, without any change, if the system does not know the code page.
extern "C" QVCOMMON_API int _setmbcp(int codePage);
#endif
