#pragma once

#include "qvcommon/framework/Collections.h"

/// The users of the system, and its network name.
class QVCOMMON_API CNetUtils {
public:
    /// Returns the login name of the user that runs the program; "Unknown" if it is not available or longer than 63
    /// bytes.
    static CString GetCurrentUserName();

    /// Stores the login names of this system's human users, sorted by their bytes, without duplicates. On Windows the
    /// accounts of this machine, not those of its domain. On Linux those of the user database (which may be on the
    /// network) with ids from 1000 to 59999: the others belong to services. The array is cleared first.
    /// @return 0 if the system does not provide them
    static BOOL GetUserNames(CStringArray& names);
    /// Returns the display name of the user with that login name, such as "Anna Berg"; the login name itself if the
    /// system has no other, or no such user.
    static CString GetDisplayName(const char* userName);
    /// Returns the machine's network name, without its domain; empty if the system does not provide it.
    static CString GetMachineName();
};
