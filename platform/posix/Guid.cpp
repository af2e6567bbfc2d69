#include "platform/Guid.h"

#include <sys/random.h>

#include <cerrno>

namespace qv::platform {

std::optional<Guid> NewGuid() {
    Guid guid{};
    ssize_t got;
    do got = ::getrandom(guid.data(), guid.size(), 0);  // so few bytes come all at once
    while (got < 0 && errno == EINTR);
    if (got != static_cast<ssize_t>(guid.size())) return std::nullopt;
    guid[6] = static_cast<unsigned char>((guid[6] & 0x0F) | 0x40);  // RFC 4122: version 4, random
    guid[8] = static_cast<unsigned char>((guid[8] & 0x3F) | 0x80);  // and its variant
    return guid;
}

}  // namespace qv::platform
