#pragma once

/// @file The system's error numbers and their texts.

#include <string>

namespace qv::platform {

/// The calling thread's last system error (errno on Linux). Failures of this layer are statuses and do not pass through
/// here: it is there for the exported functions that report the last error of a call that the program itself has made, or
/// that leave their own failure there for the program to read.
unsigned long LastError();
void SetLastError(unsigned long error);

/// The system's message for an error number, as the system formats it (on Windows a line break ends it); empty if it
/// has none.
std::string ErrorMessage(unsigned long error);

}  // namespace qv::platform
