#pragma once

#include "qvcommon/framework/String.h"

/// The users of the network.
class QVCOMMON_API CNetUtils {
public:
    /// The login name of the user as whom the program runs; "Unknown" when it cannot be had or is longer than 63 bytes.
    static CString GetCurrentUserName();
};
