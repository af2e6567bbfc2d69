#pragma once

#include <string>
#include <vector>

#include "platform/Status.h"

namespace qv::platform {

/// The login name of the user as whom the program runs; "Unknown" when it cannot be had or is longer than 63 bytes.
/// On Linux each thread asks the user database once for each user.
std::string UserName();

/// The login names of the accounts of people, in no order. Which these are, qvcommon/NetUtils.h says. Any thread.
Status ListUsers(std::vector<std::string>& names);
/// The full name of a login name; empty when the user has no full name.
std::string DisplayName(const std::string& user);

/// The machine's name without its domain; empty when it cannot be had.
std::string MachineName();

}  // namespace qv::platform
