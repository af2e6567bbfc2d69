#pragma once

/// @file The code page that the process's texts are in, and how to choose another one.
///
/// On Windows it is the system's ANSI code page. On Linux it is the character set of the C locale that the program has
/// chosen by setlocale; without one, that of the locale which the environment names when the first text is looked at;
/// and UTF-8 where that is "C", "POSIX", unknown to the system, or not named at all. A program that never calls setlocale
/// thus reads and writes the texts of its user, and UTF-8 in services and containers.
///
/// In the plain C locale letters have the case that Unicode gives them, and texts sort by their bytes.

#if __has_include(<mbctype.h>)
#include <mbctype.h>  // the C runtime has the function itself
#else
#include "qvcommon/Export.h"

/// Names for _setmbcp that are no code pages.
inline constexpr int _MB_CP_SBCS = 0, _MB_CP_OEM = -2, _MB_CP_ANSI = -3, _MB_CP_LOCALE = -4;

/// Chooses the code page of all texts of the process, whatever the locale: 1252, 932, 28591, 65001 and what else the
/// system's iconv knows and holds ASCII. `_MB_CP_SBCS` is 1252, the other three names end the choice. Texts that exist
/// keep their bytes. Any thread may call it, while no other thread is within a call that looks at texts.
/// @return 0; -1, and nothing has changed, for a code page that the system does not know.
extern "C" QVCOMMON_API int _setmbcp(int codePage);
#endif
