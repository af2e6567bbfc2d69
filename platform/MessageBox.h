#pragma once

namespace qv::platform {

/// The system's own way to show a text and get an answer, in the message box's styles and button numbers.
/// Windows: its message box, on top of the calling thread's active window. Linux: a line on standard error, and the answer
/// that does no harm: OK where it is offered, else No, Cancel or Abort.
int ShowMessageBox(const char* text, unsigned style);

}  // namespace qv::platform
