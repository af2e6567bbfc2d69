#include "platform/User.h"

#include <iterator>

#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {

std::string UserName() {
    wchar_t name[257];
    DWORD size = std::size(name);
    return sys::GetUserNameW(name, &size).ok() ? FromSystem(name) : "Unknown";
}

}  // namespace qv::platform
