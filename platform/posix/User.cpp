#include "platform/User.h"

#include "platform/posix/UserEntry.h"

namespace qv::platform {

std::string UserName() {
    constexpr std::size_t kLongestName = 63;
    const std::string name = OwnUserEntry(&passwd::pw_name);
    return name.empty() || name.size() > kLongestName ? "Unknown" : name;
}

}  // namespace qv::platform
