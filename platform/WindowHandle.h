#pragma once

/// @file A window of the system, opaque to the layers above.

/// The tag used by programs on Windows too, so that handles need no conversion.
struct HWND__;

namespace qv::platform {

using WindowHandle = HWND__*;

}  // namespace qv::platform
