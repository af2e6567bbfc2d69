#pragma once

#include "qvcommon/framework/Collections.h"

/// The users of the system, and its name on the network.
class QVCOMMON_API CNetUtils {
public:
    /// The login name of the user as whom the program runs; "Unknown" when it cannot be had or is longer than 63 bytes.
    static CString GetCurrentUserName();

    /// The login names of the people who have accounts here, sorted by their bytes, each once. On Windows the accounts of
    /// this machine, not those of its domain. On Linux those of the user database (which may be on the network) with numbers
    /// from 1000 to 59999: the others belong to services. The array is cleared first.
    /// @return 0 when the system does not tell them
    static BOOL GetUserNames(CStringArray& names);
    /// The name for people of the user with that login name, such as "Anna Berg"; the login name itself where the system
    /// knows no other, or no such user.
    static CString GetDisplayName(const char* userName);
    /// The machine's name on the network, without its domain; empty when the system does not tell it.
    static CString GetMachineName();
};
