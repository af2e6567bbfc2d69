#pragma once

/// @file The framework's plain types. They agree with system headers that define the same names, so both can be
/// included in one source file.

#include <cstdint>
#include <type_traits>

/// A Boolean: 0 is false, anything else is true.
using BOOL = int;
/// 32 bits.
using UINT = unsigned int;
/// 8 bits.
using BYTE = unsigned char;

/// Each: 32 bits on every system: the system's own `long` where that has 32 bits, an `int` elsewhere.
using DWORD = std::conditional_t<sizeof(long) == 4, unsigned long, std::uint32_t>;
using LONG = std::conditional_t<sizeof(long) == 4, long, std::int32_t>;

/// The result of a COM operation: negative for a failure.
using HRESULT = LONG;

struct HWND__;
/// A window of the platform. Null on systems without windows.
using HWND = HWND__*;

/// A system object, such as a thread.
using HANDLE = void*;
