#pragma once

#include <string>

namespace qv::platform {

/// The login name of the user as whom the program runs; "Unknown" when it cannot be had or is longer than 63 bytes.
/// On Linux each thread asks the user database once for each user.
std::string UserName();

}  // namespace qv::platform
