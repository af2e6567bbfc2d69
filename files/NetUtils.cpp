#include "qvcommon/NetUtils.h"

#include "platform/User.h"

CString CNetUtils::GetCurrentUserName() {
    return CString(qv::platform::UserName());
}
