#pragma once

/// @file The system's error numbers and their texts.

#include <string>

namespace qv::platform {

/// The calling thread's last system error (errno on Linux).
unsigned long LastError();
void SetLastError(unsigned long error);

/// The system's message for an error number, as the system formats it (on Windows a line break ends it); empty if it
/// has none.
std::string ErrorMessage(unsigned long error);

}  // namespace qv::platform
