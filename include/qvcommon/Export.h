#pragma once

/// @file The export macro and the calling convention. On Windows the build defines QVCOMMON_DLL_EXPORT for the
/// library's own objects and QVCOMMON_DLL_IMPORT for programs that link the DLL; if neither is defined, the library is
/// an ELF shared object with hidden visibility.

#include <type_traits>

#if defined(QVCOMMON_DLL_EXPORT)
#define QVCOMMON_API __declspec(dllexport)
#elif defined(QVCOMMON_DLL_IMPORT)
#define QVCOMMON_API __declspec(dllimport)
#else
/// Marks exported symbols.
#define QVCOMMON_API __attribute__((visibility("default")))
#endif

/// The calling convention of exported free functions and of callbacks that are plain functions. Differs from the
/// default only on 32-bit Windows.
#if (defined(QVCOMMON_DLL_EXPORT) || defined(QVCOMMON_DLL_IMPORT)) && (defined(__i386__) || defined(_M_IX86))
#define QVCOMMON_CALL __cdecl
// Static members and the standard library's templates cross the boundary as well, with the compiler's default.
static_assert(std::is_same_v<void (*)(int), void(QVCOMMON_CALL*)(int)>,
              "QvCommon needs __cdecl as the default calling convention");
#else
#define QVCOMMON_CALL
#endif
