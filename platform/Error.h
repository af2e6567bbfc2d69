#pragma once

/// @file The system's error numbers and their texts.

#include <string>

namespace qv::platform {

/// The calling thread's last system error (errno on Linux). Failures of this layer are statuses and do not set it: it
/// is for the exported functions that report the last error of a call made by the program itself, or that set it for
/// the program.
unsigned long LastError();
void SetLastError(unsigned long error);

/// Returns the system's message for an error number, as the system formats it (on Windows with a trailing newline);
/// empty if it has none.
std::string ErrorMessage(unsigned long error);

}  // namespace qv::platform
