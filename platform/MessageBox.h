#pragma once

namespace qv::platform {

/// Shows a text and returns the user's response, with the styles and button numbers of the message box. Windows: its
/// message box, on top of the calling thread's active window. Linux: a line on standard error, and the safest response:
/// OK if available, else No, Cancel or Abort.
int ShowMessageBox(const char* text, unsigned style);

}  // namespace qv::platform
