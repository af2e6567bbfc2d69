#include "platform/User.h"

#include "platform/windows/System.h"

namespace qv::platform {

std::string UserName() {
    char name[64];
    DWORD size = sizeof name;
    return sys::GetUserNameA(name, &size).ok() ? name : "Unknown";
}

}  // namespace qv::platform
