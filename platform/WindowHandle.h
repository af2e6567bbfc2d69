#pragma once

/// @file A window of the system, which the layers above pass on and never look into.

/// The tag under which programs on Windows know it too, so that handles pass through the library as they are.
struct HWND__;

namespace qv::platform {

using WindowHandle = HWND__*;

}  // namespace qv::platform
