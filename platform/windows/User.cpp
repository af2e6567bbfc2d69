#include "platform/User.h"

#include <windows.h>

namespace qv::platform {

std::string UserName() {
    char name[64] = "Unknown";
    DWORD size = sizeof name;
    return ::GetUserNameA(name, &size) ? name : "Unknown";
}

}  // namespace qv::platform
