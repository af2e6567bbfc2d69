#include "platform/User.h"

#include <pwd.h>
#include <unistd.h>

#include <vector>

namespace qv::platform {

std::string UserName() {
    constexpr std::size_t kLongestName = 63;
    std::vector<char> texts(16384);
    passwd entry{}, *found = nullptr;
    ::getpwuid_r(::geteuid(), &entry, texts.data(), texts.size(), &found);
    const std::string name = found && entry.pw_name ? entry.pw_name : "";
    return name.empty() || name.size() > kLongestName ? "Unknown" : name;
}

}  // namespace qv::platform
