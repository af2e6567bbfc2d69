#include "qvcommon/NetUtils.h"

#include <set>

#include "platform/User.h"

CString CNetUtils::GetCurrentUserName() {
    constexpr std::size_t kLongestName = 63;
    const std::string name = qv::platform::UserName();
    return CString(name.size() <= kLongestName ? name : "Unknown");
}

BOOL CNetUtils::GetUserNames(CStringArray& names) {
    std::vector<std::string> found;
    const bool listed = qv::platform::ListUsers(found).ok();
    const std::set<std::string> sorted(found.begin(), found.end());
    names = CStringArray(sorted.begin(), sorted.end());
    return listed;
}

CString CNetUtils::GetDisplayName(const char* userName) {
    const CString login = userName, name(qv::platform::DisplayName(login));
    return name.IsEmpty() ? login : name;
}

CString CNetUtils::GetMachineName() {
    return CString(qv::platform::MachineName());
}
