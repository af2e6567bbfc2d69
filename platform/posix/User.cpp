#include "platform/User.h"

#include "platform/posix/UserEntry.h"

namespace qv::platform {

// Every lock on a document asks for the name, and each query of the user database reads its file, or goes over a network.
std::string UserName() {
    constexpr std::size_t kLongestName = 63;
    thread_local struct {
        uid_t user = 0;
        std::string name;
    } known;
    const uid_t user = ::geteuid();
    if (known.name.empty() || known.user != user) known = {user, OwnUserEntry(&passwd::pw_name)};
    return known.name.empty() || known.name.size() > kLongestName ? "Unknown" : known.name;
}

}  // namespace qv::platform
