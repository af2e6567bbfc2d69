#pragma once

/// @file The one export macro. The build defines QVCOMMON_DLL_EXPORT while it makes the DLL and QVCOMMON_DLL_IMPORT for
/// those who link it; where neither is defined the library is an ELF shared object with hidden visibility.

#if defined(QVCOMMON_DLL_EXPORT)
#define QVCOMMON_API __declspec(dllexport)
#elif defined(QVCOMMON_DLL_IMPORT)
#define QVCOMMON_API __declspec(dllimport)
#else
#define QVCOMMON_API __attribute__((visibility("default")))
#endif

/// Exported for the library's own tests and tools. No promise to anyone else: it may change or go with any release.
#define QVCOMMON_INTERNAL_API QVCOMMON_API
