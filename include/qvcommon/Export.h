#pragma once

/// @file The one export macro. On Windows the build defines QVCOMMON_DLL_EXPORT for the library's own objects
/// and QVCOMMON_DLL_IMPORT for programs that link the DLL; where neither is defined the library is an ELF shared object
/// with hidden visibility.

#if defined(QVCOMMON_DLL_EXPORT)
#define QVCOMMON_API __declspec(dllexport)
#elif defined(QVCOMMON_DLL_IMPORT)
#define QVCOMMON_API __declspec(dllimport)
#else
#define QVCOMMON_API __attribute__((visibility("default")))
#endif
