#pragma once

#include <string>
#include <vector>

#include "platform/Status.h"

namespace qv::platform {

/// Returns the login name of the user that runs the program; "Unknown" if it is not available. On Linux each thread
/// queries the user database once per user.
std::string UserName();

/// Lists the login names of human users, as defined by qvcommon/NetUtils.h, in no particular order. Thread-safe.
Status ListUsers(std::vector<std::string>& names);
/// Returns the full name of a login name; empty if the user has no full name.
std::string DisplayName(const std::string& user);

/// Returns the machine's name without its domain; empty if it is not available.
std::string MachineName();

}  // namespace qv::platform
